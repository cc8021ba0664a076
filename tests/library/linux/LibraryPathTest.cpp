// Where the user default bank lies when the library was not loaded by its plain full path.
#include "tests/host/TemporaryFolder.h"
#include "tests/library/LoadedSynth.h"
#include "tests/library/linux/Screen.h"

#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace
{
void saveBank (LoadedSynth& synth)
{
    const std::string display = environment ("DISPLAY");
    ::unsetenv ("DISPLAY"); // the question answers itself
    synth.setParameter (45, 0.0f);
    ::setenv ("DISPLAY", display.c_str (), 1);
}

TEST (LibraryPath, IsTheLinkOrTheRelativePathAtLoading)
{
    const TemporaryFolder folder;
    const auto plain = folder / "plain";
    const auto linked = folder / "linked";
    std::filesystem::create_directories (plain);
    std::filesystem::create_directories (linked);
    std::filesystem::copy_file (BRIMVALE_LIBRARY, plain / "Brimvale.so");
    std::filesystem::copy_file (BRIMVALE_LIBRARY, folder / "Other.so");
    std::filesystem::create_symlink (folder / "Other.so", linked / "Other.so");
    {
        LoadedSynth synth (linked / "Other.so");
        saveBank (synth);
        EXPECT_TRUE (std::filesystem::exists (linked / "Other.bnk"));
        EXPECT_FALSE (std::filesystem::exists (folder / "Other.bnk"));
    }
    // A host may load by a relative path and change its folder afterwards.
    const auto workingFolder = std::filesystem::current_path ();
    std::filesystem::current_path (plain);
    void* library = ::dlopen ("./Brimvale.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE (library, nullptr) << ::dlerror ();
    std::filesystem::current_path (linked);
    LoadedSynth synth (plain / "Brimvale.so"); // the same, already loaded
    saveBank (synth);
    EXPECT_TRUE (std::filesystem::exists (plain / "Brimvale.bnk"));
    EXPECT_FALSE (std::filesystem::exists (linked / "Brimvale.bnk"));
    std::filesystem::current_path (workingFolder);
    ::dlclose (library);
}
}
