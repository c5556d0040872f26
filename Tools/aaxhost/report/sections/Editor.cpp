#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <fmt/format.h>

std::string EditorSection(const SReportEditor& inEditor)
{
    if (!inEditor.mProblem.empty() || inEditor.mPngBase64.empty())
        return Note(inEditor.mProblem);
    return Figure(fmt::format("{} by {} pixels", inEditor.mWidth, inEditor.mHeight),
                  fmt::format("<img alt=\"The plug-in's editor\" width=\"{}\" height=\"{}\" "
                              "src=\"data:image/png;base64,{}\">\n",
                              inEditor.mWidth, inEditor.mHeight, inEditor.mPngBase64));
}
