#pragma once
#include <cstddef>
#include <map>
#include <memory>
#include <string>

class CMachOImage;
class CMachOLoader;

/** What the CoreFoundation double hands out: a text, a location or a bundle. */
struct SCoreObject
{
    enum class EKind
    {
        kString,
        kUrl,
        kBundle
    };
    EKind mKind = EKind::kString;
    std::string mText; // the characters or the path
    int mReferences = 1;
    std::string mName;             // in the log, like "url2"
    CMachOImage* mImage = nullptr; // a bundle's executable while it is loaded
};

/**
 * The objects that exist, and the bundles on disk behind them.
 *
 * Ends the process when an object is used that is none, is of another kind or is gone, as the real calls may.
 */
class CBundleStore
{
public:
    explicit CBundleStore(CMachOLoader& inLoader) : mLoader(inLoader) {}

    SCoreObject& Make(SCoreObject::EKind inKind, const std::string& inText);
    /** @return the one bundle object of that folder with a reference more; null when there is no such folder.
     */
    SCoreObject* OpenBundle(const std::string& inFolder);
    SCoreObject& Get(const void* inObject, SCoreObject::EKind inKind) const;
    SCoreObject& Get(const void* inObject) const;
    void Release(SCoreObject& ioObject);
    std::size_t Count() const { return mObjects.size(); }

    /** @return whether the executable is loaded now; the reason goes to standard error. */
    bool LoadExecutable(SCoreObject& ioBundle);
    void UnloadExecutable(SCoreObject& ioBundle);

private:
    CMachOLoader& mLoader;
    std::map<const void*, std::unique_ptr<SCoreObject>> mObjects; // by their own address
    std::map<SCoreObject::EKind, int> mMade;                      // for the names
};
