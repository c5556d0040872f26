#pragma once

/**
 * Stands in for the one header outside of its lib/ that VSTGUI's own sources ask for, where a release is
 * given without it. Here no view has a controller.
 */
namespace VSTGUI
{
class CView;

class IController
{
public:
    virtual ~IController() = default;
};

inline IController* getViewController(const CView*, bool) { return nullptr; }
} // namespace VSTGUI
