#include "Examples/broken/CPlainEffect.h"

#include <memory>
#include <vector>

/** Leaks a megabyte with each instance. */
class CBrokenLeak final : public CPlainEffect
{
public:
    explicit CBrokenLeak(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        constexpr std::size_t megabyte = 1U << 20;
        sLeaked.push_back(std::make_unique<std::vector<char>>(megabyte, '\1'));
    }

private:
    static inline std::vector<std::unique_ptr<std::vector<char>>> sLeaked;
};

BROKEN_PLUGIN(CBrokenLeak)
