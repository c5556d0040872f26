#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <vector>

namespace faults
{
/** Allocates in each block that it renders; is compiled so that calls of other images are bound at loading.
 */
void HeapBoundEarly(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        float* const output = inBlock.mOutputs[0];
        const std::vector<float> copy(output, output + inBlock.mFrames);
        std::ranges::copy(copy, output);
    };
}
} // namespace faults
