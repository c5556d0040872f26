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
    /** May make another size of the one that is asked for, as hosts do that have whole pixels only, and takes
     * it with kAAX_Success or refuses it. */
    using ResizeHandler = std::function<AAX_Result(AAX_Point& ioSize)>;
    /** Is asked about each size that the module asks for; without one every size is taken as it is. */
    void SetResizeHandler(ResizeHandler inHandler);
    /** The last size that the module asked for, taken or not. */
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
    ResizeHandler mResizeHandler;
    std::optional<AAX_Point> mRequestedSize;
    int mReferences = 0;
};
