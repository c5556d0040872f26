#include "Tools/aaxhost/report/Material.h"

#include <charconv>

const SReportTexts* SReportParameterTexts::Find(const std::string& inID) const
{
    std::size_t index = 0;
    const char* const end = inID.data() + inID.size();
    const auto [rest, error] = std::from_chars(inID.data(), end, index);
    return error == std::errc() && rest == end && index < mParameters.size() ? &mParameters[index] : nullptr;
}
