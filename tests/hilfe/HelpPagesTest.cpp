// The help as it lies in the tree: nothing it refers to is missing, and it has what the program asks for.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

#include "base/Text.h"

namespace {

namespace fs = std::filesystem;

const fs::path kSources = SOURCE_FOLDER;
const fs::path kHelp = kSources / "hilfe";

std::string Content(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return in ? content.str() : std::string();
}

// What the first group of the expression matches, in the order of the text.
std::vector<std::string> Matches(const std::string& text, const std::string& expression) {
    const std::regex regex(expression);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

// Content of every page by its name.
std::map<std::string, std::string> Pages() {
    std::map<std::string, std::string> pages;
    for (const auto& entry : fs::directory_iterator(kHelp)) {
        if (entry.path().extension() == ".html")
            pages[entry.path().filename().string()] = Content(entry.path());
    }
    return pages;
}

std::vector<std::string> References(const std::string& page) {
    return Matches(page, "(?:href|src)=\"([^\"]*)\"");
}

}  // namespace

TEST(HelpPages, EveryPageThatTheProgramOpensIsThere) {
    std::set<std::string> asked;
    for (const char* room : {"addressbook", "app", "base", "exchange", "mail", "net", "notes", "print"}) {
        for (const auto& entry : fs::directory_iterator(kSources / room)) {
            for (const std::string& page : Matches(Content(entry.path()), "L\"(\\w+\\.html)\""))
                asked.insert(page);
        }
    }
    const std::set<std::string> known = {
        "index.html",      "ch2_find.html",    "ch2_new.html",
        "ch3_export.html", "ch3_import.html",  "ch3_print.html",
        "ch4_email.html",  "ch4_network.html", "ch4_networkaddressbook.html"};
    EXPECT_EQ(asked, known);
    for (const std::string& page : asked) EXPECT_FALSE(Content(kHelp / page).empty()) << page;
}

TEST(HelpPages, NoReferenceLeadsNowhere) {
    const std::map<std::string, std::string> pages = Pages();
    ASSERT_FALSE(pages.empty());
    for (const auto& [name, content] : pages) {
        EXPECT_FALSE(References(content).empty()) << name;
        for (const std::string& reference : References(content)) {
            SCOPED_TRACE(name + ": " + reference);
            // Nothing from outside: the help is read without a network, too.
            EXPECT_EQ(reference.find(':'), std::string::npos);
            EXPECT_FALSE(reference.starts_with("/"));
            const std::size_t hash = reference.find('#');
            const std::string target = hash == 0 ? name : reference.substr(0, hash);
            EXPECT_TRUE(fs::is_regular_file(kHelp / target));
            if (hash == std::string::npos) continue;
            ASSERT_TRUE(pages.contains(target));
            const std::string anchor = " id=\"" + reference.substr(hash + 1) + "\"";
            EXPECT_NE(pages.at(target).find(anchor), std::string::npos);
        }
    }
}

TEST(HelpPages, EveryPageIsReachedFromTheFirst) {
    const std::map<std::string, std::string> pages = Pages();
    std::set<std::string> reached;
    std::vector<std::string> next = {"index.html"};
    while (!next.empty()) {
        const std::string page = next.back();
        next.pop_back();
        if (!pages.contains(page) || !reached.insert(page).second) continue;
        for (const std::string& reference : References(pages.at(page)))
            next.push_back(reference.substr(0, reference.find('#')));
    }
    EXPECT_EQ(reached.size(), pages.size());
}

TEST(HelpPages, PagesSayWhatBrowsersAndReadersNeed) {
    for (const auto& [name, content] : Pages()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(ToUtf8(FromUtf8(content)), content);
        EXPECT_EQ(content.find("<script"), std::string::npos);
        EXPECT_NE(content.find("<html lang=\"de\">"), std::string::npos);
        EXPECT_NE(content.find("<meta charset=\"utf-8\">"), std::string::npos);
        EXPECT_NE(content.find("name=\"viewport\""), std::string::npos);
        EXPECT_EQ(Matches(content, "(<h1>)").size(), 1u);
        for (const std::string& image : Matches(content, "<img([^>]*)>"))
            EXPECT_NE(image.find(" alt=\""), std::string::npos) << image;

        std::set<std::string> ids;
        for (const std::string& id : Matches(content, " id=\"([^\"]*)\""))
            EXPECT_TRUE(ids.insert(id).second) << id;
    }
}

TEST(HelpPages, PicturesAreThereAndUsed) {
    std::set<std::string> used;
    for (const auto& [name, content] : Pages())
        for (const std::string& picture : Matches(content, "src=\"(bilder/[^\"]*)\"")) used.insert(picture);
    for (const std::string& picture : Matches(Content(kSources / "README.md"), "hilfe/(bilder/[\\w.-]*)")) {
        EXPECT_TRUE(fs::is_regular_file(kHelp / picture)) << picture;
        used.insert(picture);
    }
    for (const auto& entry : fs::directory_iterator(kHelp / "bilder")) {
        const std::string picture = "bilder/" + entry.path().filename().string();
        EXPECT_TRUE(used.contains(picture)) << picture;
        EXPECT_LT(entry.file_size(), 60'000u) << picture;
    }
}
