#include "Source/AaxAdapter_Product.h"
#include "Source/features/CFeaturedEditor.h"
#include "Source/features/CFeaturedParameters.h"
#include "Source/features/CStems.h"
#include "Source/features/OutputNames.h"
#include "Source/plugins/ProductFeatures.h"
#include "Source/plugins/ProductOptions.h"

SInstanceFactories FeaturedInstanceFactories() noexcept
{
    return {&CFeaturedParameters::Create, &CFeaturedEditor::Create,
            kProductFeatures.mOutputNames ? &NameOutput : nullptr,
            kStems != 0 ? &ListStemComponents : nullptr};
}
