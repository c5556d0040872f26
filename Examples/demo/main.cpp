#include "Examples/demo/DemoMaterial.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

// demo_material FOLDER: writes what the demonstration plays, phrase.mid, signal.wav and sweep.csv.
int main(int inCount, char** inArguments)
{
    if (inCount != 2)
    {
        (void)std::fputs("Usage: demo_material FOLDER\n", stderr); // nothing to do when that fails
        return 2;
    }
    const std::filesystem::path folder = inArguments[1];
    std::error_code error; // shows when the first file is written
    std::filesystem::create_directories(folder, error);
    struct SFile
    {
        const char* mName;
        bool (*mWrite)(const std::filesystem::path&);
    };
    for (const SFile& file : {SFile{"phrase.mid", &WritePhrase}, SFile{"signal.wav", &WriteSignal},
                              SFile{"sweep.csv", &WriteSweep}})
    {
        const std::filesystem::path path = folder / file.mName;
        if (!file.mWrite(path))
        {
            (void)std::fprintf(stderr, "%s cannot be written.\n", path.c_str()); // as above
            return 1;
        }
    }
    return 0;
}
