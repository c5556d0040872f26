#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"

#include <functional>
#include <optional>

class CHostLog;

/**
 * The place in the host's window where an editor goes. It records; the view itself is supplied from outside.
 *
 * Threads: the main thread. References that the module takes are counted but keep nothing alive.
 */
class CHostViewContainer final : public AAX_IACFViewContainer
{
public:
    explicit CHostViewContainer(CHostLog& inLog);
    CHostViewContainer(const CHostViewContainer&) = delete;
    CHostViewContainer& operator=(const CHostViewContainer&) = delete;

    /** @param inView the native view, not owned; inType is the interface's number for its kind. */
    void SetView(std::int32_t inType, void* inView) noexcept;
    void SetModifiers(std::uint32_t inModifiers) noexcept { mModifiers = inModifiers; }
    /** Called with each size that the module asks for. */
    void SetResizeHandler(std::function<void(const AAX_Point&)> inHandler);
    /** The last size that the module asked for. */
    std::optional<AAX_Point> RequestedSize() const noexcept { return mRequestedSize; }
    int References() const noexcept { return mReferences; }

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
    acfUInt32 AddRef() override;
    acfUInt32 Release() override;
    std::int32_t GetType() override;
    void* GetPtr() override;
    AAX_Result GetModifiers(std::uint32_t* modifiers) override;
    AAX_Result SetViewSize(AAX_Point& size) override;
    AAX_Result HandleParameterMouseDown(AAX_CParamID id, std::uint32_t modifiers) override;
    AAX_Result HandleParameterMouseDrag(AAX_CParamID id, std::uint32_t modifiers) override;
    AAX_Result HandleParameterMouseUp(AAX_CParamID id, std::uint32_t modifiers) override;

private:
    AAX_Result RecordMouse(const char* inName, AAX_CParamID inID, std::uint32_t inModifiers);

    CHostLog& mLog;
    std::int32_t mType = 1;
    void* mView = nullptr;
    std::uint32_t mModifiers = 0;
    std::function<void(const AAX_Point&)> mResizeHandler;
    std::optional<AAX_Point> mRequestedSize;
    int mReferences = 0;
};
