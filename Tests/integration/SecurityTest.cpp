#include "Tests/integration/CHostRoutine.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/SystemCallTrap.h"
#include "Tools/aaxhost/lib/CModule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <elf.h>

namespace
{
namespace fs = std::filesystem;

/** What the loader reads of a built module. */
class CElfFile
{
public:
    explicit CElfFile(const fs::path& inFile)
    {
        std::ifstream file(inFile, std::ios::binary);
        mBytes.assign(std::istreambuf_iterator<char>(file), {});
        const auto header = Record<Elf64_Ehdr>(0);
        for (std::size_t i = 0; i < header.e_phnum; ++i)
            mSegments.push_back(Record<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr)));
        for (std::size_t i = 0; i < header.e_shnum; ++i)
            ReadSection(header, Record<Elf64_Shdr>(header.e_shoff + i * sizeof(Elf64_Shdr)));
    }

    const Elf64_Phdr* Segment(std::uint32_t inType) const
    {
        const auto found = std::ranges::find(mSegments, inType, &Elf64_Phdr::p_type);
        return found != mSegments.end() ? &*found : nullptr;
    }
    std::uint64_t Dynamic(std::int64_t inTag) const
    {
        const auto found = std::ranges::find(mDynamic, inTag, &Elf64_Dyn::d_tag);
        return found != mDynamic.end() ? found->d_un.d_val : 0;
    }
    /** The functions and variables that other files have to give. */
    const std::set<std::string>& Imports() const { return mImports; }

private:
    template <class Structure>
    Structure Record(std::size_t inOffset) const
    {
        Structure record{};
        if (inOffset + sizeof(record) <= mBytes.size())
            std::memcpy(&record, mBytes.data() + inOffset, sizeof(record));
        return record;
    }
    void ReadSection(const Elf64_Ehdr& inHeader, const Elf64_Shdr& inSection)
    {
        if (inSection.sh_type == SHT_DYNAMIC)
            for (std::size_t at = 0; at < inSection.sh_size; at += sizeof(Elf64_Dyn))
                mDynamic.push_back(Record<Elf64_Dyn>(inSection.sh_offset + at));
        if (inSection.sh_type != SHT_DYNSYM)
            return;
        const auto names =
            Record<Elf64_Shdr>(inHeader.e_shoff + inSection.sh_link * sizeof(Elf64_Shdr)).sh_offset;
        for (std::size_t at = 0; at < inSection.sh_size; at += sizeof(Elf64_Sym))
        {
            const auto symbol = Record<Elf64_Sym>(inSection.sh_offset + at);
            if (symbol.st_shndx == SHN_UNDEF && symbol.st_name != 0)
                mImports.insert(mBytes.data() + names + symbol.st_name);
        }
    }

    std::vector<char> mBytes;
    std::vector<Elf64_Phdr> mSegments;
    std::vector<Elf64_Dyn> mDynamic;
    std::set<std::string> mImports;
};

TEST(Hardening, TheModuleIsBoundAtOnceItsTablesReadOnlyAndItsStackGuarded)
{
    const CElfFile module(kPlainModule);
    EXPECT_NE(module.Dynamic(DT_FLAGS) & DF_BIND_NOW, 0U);
    EXPECT_NE(module.Dynamic(DT_FLAGS_1) & DF_1_NOW, 0U);
    EXPECT_EQ(module.Dynamic(DT_TEXTREL), 0U);
    EXPECT_NE(module.Segment(PT_GNU_RELRO), nullptr);
    ASSERT_NE(module.Segment(PT_GNU_STACK), nullptr);
    EXPECT_EQ(module.Segment(PT_GNU_STACK)->p_flags & PF_X, 0U);
    EXPECT_TRUE(module.Imports().contains("__stack_chk_fail"));
#if defined(__OPTIMIZE__) && !defined(AAXADAPTER_SANITIZED)
    EXPECT_TRUE(std::ranges::any_of(module.Imports(),
                                    [](const std::string& name) { return name.ends_with("printf_chk"); }))
        << "texts are formatted without a look at the room";
#endif
}

TEST(Hardening, TheModuleCallsNothingThatRunsACommand)
{
    const CElfFile module(kPlainModule);
    EXPECT_GT(module.Imports().size(), 50U);
    for (const char* name :
         {"system", "popen", "execl", "execle", "execlp", "execv", "execve", "execvp", "execvpe", "execveat",
          "fexecve", "fork", "vfork", "posix_spawn", "posix_spawnp", "wordexp", "dlmopen", "syscall"})
        EXPECT_FALSE(module.Imports().contains(name)) << name;
}

TEST(Hardening, NoFileIsOpenedButThePluginsAndNoCommandRun)
{
    unsetenv("DISPLAY"); // no keys to ask for at a gesture
    const CModuleBundle bundle(kPlainModule, STRESS_PLUGIN);
    const fs::path bait = bundle.Path().parent_path() / "bait";
    std::ofstream(bait) << "not to be read";
    // The host's part: the module file, and the libraries that it brings.
    const fs::path moduleFile = bundle.Path() / "Contents" / "x86_64-linux" / kPlainModule.filename();
    void* const loaded = dlopen(moduleFile.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(loaded, nullptr) << dlerror();

    const auto work = [&]
    {
        CHostLog log;
        auto module = CModule::Open(bundle.Path().string(), log);
        ASSERT_TRUE(module) << module.Problem().mSentence;
        auto instance = CInstance::Create(**module, 48000.0);
        ASSERT_TRUE(instance) << instance.Problem().mSentence;
        CHostRoutine routine(**instance);
        routine.Everything();
        for (const char* id : {"elck", "0001"})
        {
            CStateChunk chunk(bait.string().size());
            std::memcpy(chunk.Room().data(), bait.c_str(), bait.string().size());
            const AAX_CTypeID type =
                std::string_view(id) == "elck" ? AAX_FourCharCode("elck") : AAX_FourCharCode("0001");
            chunk.Record().mChunkID = type;
            EXPECT_EQ((*instance)->Parameters().SetChunk(type, &chunk.Record()), kAAX_Success);
        }
        routine.Everything();
    };
    std::vector<STrappedCall> calls;
    if (!TrapSystemCalls(work, calls))
    {
        dlclose(loaded);
        GTEST_SKIP() << "this system does not let a process watch its own calls";
    }
    dlclose(loaded);
    bool isPluginOpened = false;
    for (const STrappedCall& call : calls)
    {
        SCOPED_TRACE(call.mNumber);
        const bool isPlugin = fs::path(call.mPath).lexically_normal() == bundle.SourceVst();
        isPluginOpened = isPluginOpened || isPlugin;
        EXPECT_TRUE(isPlugin || fs::path(call.mPath) == moduleFile) << call.mPath;
    }
    EXPECT_TRUE(isPluginOpened) << "nothing was seen";
}

TEST(SystemCallTrap, SeesAFileOpenedAndACommandRun)
{
    std::vector<STrappedCall> calls;
    const auto work = []
    {
        const std::ifstream file("/proc/self/status");
        EXPECT_TRUE(file.is_open());
        EXPECT_EQ(std::system("true"), 0);
    };
    if (!TrapSystemCalls(work, calls))
        GTEST_SKIP() << "this system does not let a process watch its own calls";
    const auto sees = [&](const char* path)
    { return std::ranges::any_of(calls, [=](const STrappedCall& call) { return call.mPath == path; }); };
    EXPECT_TRUE(sees("/proc/self/status"));
    EXPECT_TRUE(sees("/bin/sh"));
}
} // namespace
