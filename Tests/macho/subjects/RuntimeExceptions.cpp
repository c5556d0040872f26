#include "Tests/macho/subjects/RuntimeExceptions.h"

#include "Tests/macho/subjects/LiveObject.h"
#include "Tests/macho/subjects/RuntimeSubject.h"

#include <exception>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

namespace
{
constexpr int kDepth = 5;

class COwnError : public std::runtime_error
{
public:
    explicit COwnError(int inCode) : std::runtime_error("an error of the image's own"), mCode(inCode) {}
    int mCode = 0;
};

struct SBase
{
    virtual ~SBase() = default;
};
struct SDerived : SBase
{
    int number = 0;
};

int CastToDerived(SBase& inObject) { return dynamic_cast<SDerived&>(inObject).number; }

[[noreturn]] void ThrowRethrown()
{
    try
    {
        throw COwnError(kThrowRethrown);
    }
    catch (const std::exception&)
    {
        throw;
    }
}

[[noreturn]] void ThrowNested()
{
    try
    {
        throw COwnError(kThrowNested);
    }
    catch (const COwnError&)
    {
        std::throw_with_nested(std::logic_error("around another one"));
    }
}

int Throw(int inThrown)
{
    switch (inThrown)
    {
    case kThrowInteger: throw inThrown;
    case kThrowText: throw std::string("thrown by value, and longer than the short form");
    case kThrowOwnType: throw COwnError(inThrown);
    case kThrowRethrown: ThrowRethrown();
    case kThrowNested: ThrowNested();
    case kThrowOutOfRange: return static_cast<int>(std::string("abc").substr(9).size());
    case kThrowVectorOutOfRange: return std::vector<int>().at(3);
    case kThrowBadCast:
    {
        SBase base;
        return CastToDerived(base);
    }
    case kThrowLengthError:
    {
        std::string text;
        text.reserve(text.max_size() + 1);
        return static_cast<int>(text.size());
    }
    default: return -1;
    }
}

[[gnu::noinline]] int ThrowDeep(int inThrown, int inDepth, int& ioLiveObjects)
{
    const CLiveObject object(ioLiveObjects);
    const std::string text(40, static_cast<char>('a' + inDepth));
    const int result = inDepth > 0 ? ThrowDeep(inThrown, inDepth - 1, ioLiveObjects) : Throw(inThrown);
    return result + static_cast<int>(text.size());
}

int CaughtNested(const std::exception& inOuter)
{
    try
    {
        std::rethrow_if_nested(inOuter);
    }
    catch (const COwnError& error)
    {
        return error.mCode;
    }
    return -1;
}
} // namespace

int ThrowSomethingAndCatchIt(int inThrown, int& outLiveObjects)
{
    outLiveObjects = 0;
    try
    {
        if (inThrown == kThrowThroughDwarfFrames)
            (void)ThrowThroughDwarfFrames(kDepth, outLiveObjects); // never returns
        else
            (void)ThrowDeep(inThrown, kDepth, outLiveObjects); // never returns either
    }
    catch (int number)
    {
        return number;
    }
    catch (const std::string& text)
    {
        return text.starts_with("thrown by value") ? kThrowText : -1;
    }
    catch (const COwnError& error)
    {
        return error.mCode;
    }
    catch (const std::out_of_range&)
    {
        return inThrown == kThrowVectorOutOfRange ? kThrowVectorOutOfRange : kThrowOutOfRange;
    }
    catch (const std::bad_cast&)
    {
        return kThrowBadCast;
    }
    catch (const std::length_error&)
    {
        return kThrowLengthError;
    }
    catch (const std::exception& error)
    {
        return CaughtNested(error);
    }
    return -1;
}
