#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <elf.h>

namespace
{
namespace fs = std::filesystem;

/** What the loader reads of a built module. */
class CElfFile
{
public:
    explicit CElfFile(const fs::path& inFile) : mBytes(Contents(inFile))
    {
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

    std::string mBytes;
    std::vector<Elf64_Phdr> mSegments;
    std::vector<Elf64_Dyn> mDynamic;
    std::set<std::string> mImports;
};

TEST(Hardening, TheModuleIsBoundAtOnceItsTablesReadOnlyAndItsStackProtected)
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
} // namespace
