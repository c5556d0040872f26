#include "Source/AaxAdapter_Product.h"
#include "Source/features/CFeaturedEditor.h"
#include "Source/features/CFeaturedParameters.h"

SInstanceFactories FeaturedInstanceFactories() noexcept
{
    return {&CFeaturedParameters::Create, &CFeaturedEditor::Create};
}
