// Where the user default bank lies when the library was not loaded by its plain full path.
#include "tests/host/TemporaryFolder.h"
#include "tests/library/LoadedSynth.h"

#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace
{
constexpr VstInt32 mainMenu = 45;
constexpr float saveBank = 0.0f;

class LibraryPath : public testing::Test
{
protected:
    void SetUp () override
    {
        ::unsetenv ("DISPLAY"); // the question answers itself
        std::filesystem::create_directories (folder / "plain");
        std::filesystem::create_directories (folder / "linked");
        std::filesystem::copy_file (BRIMVALE_LIBRARY, folder / "plain" / "Brimvale.so");
    }
    void TearDown () override
    {
        ::setenv ("DISPLAY", display.c_str (), 1);
        std::filesystem::current_path (workingFolder);
    }
    bool hasBank (const char* place) const
    {
        return std::filesystem::exists (folder / place / "Brimvale.bnk");
    }

    TemporaryFolder folder;

private:
    std::string display = std::getenv ("DISPLAY");
    std::filesystem::path workingFolder = std::filesystem::current_path ();
};

TEST_F (LibraryPath, ALinkedLibraryHasItsBankBesideTheLink)
{
    std::filesystem::create_symlink (folder / "plain" / "Brimvale.so", folder / "linked" / "Brimvale.so");
    LoadedSynth synth (folder / "linked" / "Brimvale.so");
    synth.setParameter (mainMenu, saveBank);
    EXPECT_TRUE (hasBank ("linked"));
    EXPECT_FALSE (hasBank ("plain"));
}

// A host may load by a relative path and change its folder afterwards.
TEST_F (LibraryPath, ARelativePathIsTheOneAtLoading)
{
    std::filesystem::current_path (folder / "plain");
    void* library = ::dlopen ("./Brimvale.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE (library, nullptr) << ::dlerror ();
    std::filesystem::current_path (folder / "linked");
    LoadedSynth synth (folder / "plain" / "Brimvale.so"); // the same, already loaded
    synth.setParameter (mainMenu, saveBank);
    EXPECT_TRUE (hasBank ("plain"));
    EXPECT_FALSE (hasBank ("linked"));
    ::dlclose (library);
}
}
