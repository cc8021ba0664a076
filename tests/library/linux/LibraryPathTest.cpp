// Where the user default bank lies when the library was not loaded by its plain full path.
#include "host/Plugin.h"
#include "parameters/Parameters.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/library/linux/Screen.h"

#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

using namespace parameters;

namespace
{
TEST (LibraryPath, IsTheLinkOrTheRelativePathAtLoading)
{
    const std::string display = environment ("DISPLAY");
    ::unsetenv ("DISPLAY"); // the questions answer themselves
    const TemporaryFolder folder;
    const auto plain = folder / "plain";
    const auto linked = folder / "linked";
    for (const auto& place : { plain, linked })
        std::filesystem::create_directories (place);
    for (const auto& copy : { plain / "Brimvale.so", folder / "Other.so" })
        std::filesystem::copy_file (BRIMVALE_LIBRARY, copy);
    std::filesystem::create_symlink (folder / "Other.so", linked / "Other.so");
    host::Plugin throughLink (linked / "Other.so");
    throughLink.setParameter (commandMainMenu, menuSaveDefaultBank);
    EXPECT_EQ (filesIn (linked), (std::set<std::string>{ "Other.bnk", "Other.so" }));

    // A host may load by a relative path and change its folder afterwards.
    const auto workingFolder = std::filesystem::current_path ();
    std::filesystem::current_path (plain);
    void* library = ::dlopen ("./Brimvale.so", RTLD_NOW | RTLD_LOCAL);
    std::filesystem::current_path (linked);
    ASSERT_NE (library, nullptr) << ::dlerror ();
    host::Plugin synth (plain / "Brimvale.so"); // the same, already loaded
    synth.setParameter (commandMainMenu, menuSaveDefaultBank);
    EXPECT_TRUE (std::filesystem::exists (plain / "Brimvale.bnk"));
    std::filesystem::current_path (workingFolder);
    ::dlclose (library);
    ::setenv ("DISPLAY", display.c_str (), 1);
}
}
