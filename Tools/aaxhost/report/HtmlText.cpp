#include "Tools/aaxhost/report/HtmlText.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
/** Bytes of a whole UTF-8 character at that place; 0 when there is none. */
std::size_t CharacterLength(const std::string& inText, std::size_t inPlace)
{
    const auto lead = static_cast<unsigned char>(inText[inPlace]);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || inPlace + length > inText.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(inText[inPlace + i]) & 0xC0) != 0x80)
            return 0;
    return length;
}
} // namespace

std::string Escaped(const std::string& inText)
{
    std::string text;
    for (std::size_t i = 0; i < inText.size();)
    {
        const std::size_t length = CharacterLength(inText, i);
        const char character = inText[i];
        if (length > 1)
            text += inText.substr(i, length);
        else if (character == '&')
            text += "&amp;";
        else if (character == '<')
            text += "&lt;";
        else if (character == '>')
            text += "&gt;";
        else if (character == '"')
            text += "&quot;";
        else if (length == 1 && character >= ' ' && character != '\x7F')
            text += character;
        i += std::max<std::size_t>(length, 1);
    }
    return text;
}

std::string WithUnit(const std::string& inText, const std::string& inUnit)
{
    const auto trimmed = [](const std::string& text)
    {
        const auto begin = text.find_first_not_of(' ');
        return begin == std::string::npos ? std::string()
                                          : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
    };
    const std::string text = trimmed(inText);
    const std::string unit = trimmed(inUnit);
    return text.empty() || unit.empty() || text.ends_with(unit) ? text : text + " " + unit;
}

std::string Note(const std::string& inSentence)
{
    return fmt::format("<p class=\"note\">{}</p>\n", Escaped(inSentence));
}

std::string Figure(const std::string& inCaption, const std::string& inContent)
{
    return fmt::format("<figure><figcaption>{}</figcaption>\n{}</figure>\n", inCaption, inContent);
}

std::string Fact(const std::string& inName, const std::string& inValue)
{
    return fmt::format("<div><dt>{}</dt><dd>{}</dd></div>\n", Escaped(inName), Escaped(inValue));
}

std::string AnchorOf(const std::string& inTitle)
{
    std::string anchor;
    for (const char letter : inTitle)
        anchor += letter >= 'A' && letter <= 'Z'   ? static_cast<char>(letter - 'A' + 'a')
                  : letter >= 'a' && letter <= 'z' ? letter
                                                   : '-';
    return anchor;
}

std::string Section(const std::string& inTitle, const std::string& inContent)
{
    return fmt::format("<section aria-labelledby=\"{0}\">\n<h2 id=\"{0}\">{1}</h2>\n{2}</section>\n",
                       AnchorOf(inTitle), Escaped(inTitle), inContent);
}
