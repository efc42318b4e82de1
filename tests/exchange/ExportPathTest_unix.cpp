#include <glib.h>
#include <gtest/gtest.h>

#include "exchange/ExportPath.h"

namespace fs = std::filesystem;

TEST(ExportPath, ATildeMeansTheHomeFolder) {
    const fs::path home = g_get_home_dir();
    const struct {
        const wchar_t* typed;
        fs::path path;
    } rows[] = {{L"~", home},          {L"~/b ü.kvr", home / "b ü.kvr"},
                {L"~b/c", "~b/c"},     {L"a~.kvr", "a~.kvr"},
                {L"/x/~/y", "/x/~/y"}, {L"", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(TypedPath(row.typed).lexically_normal(), row.path.lexically_normal());
}
