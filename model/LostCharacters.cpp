#include "model/LostCharacters.h"

#include <algorithm>

#include "base/Text.h"
#include "model/Note.h"

bool LosesCharacters(std::wstring_view text) { return FromAnsi(ToAnsi(text)) != text; }

std::wstring LossQuestion(const std::vector<std::wstring>& texts, std::wstring_view doing) {
    constexpr std::size_t kNamed = 5;
    std::wstring question = texts.size() == 1 ? L"Diese Notiz enthält" : L"Diese Notizen enthalten";
    question.append(L" Zeichen, die sich nicht ").append(doing).append(L" lassen:\r\n");
    for (std::size_t i = 0; i < std::min(kNamed, texts.size()); ++i)
        question += L"\r\n„" + ShortText(texts[i]) + L"“";
    if (texts.size() > kNamed) question += L"\r\nund " + std::to_wstring(texts.size() - kNamed) + L" weitere";
    return question + L"\r\n\r\nAn ihrer Stelle wird „?“ stehen.\r\nMöchten Sie trotzdem fortfahren?";
}
