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

std::string Section(const std::string& inTitle, const std::string& inContent)
{
    return fmt::format("<section>\n<h2>{}</h2>\n{}</section>\n", Escaped(inTitle), inContent);
}
