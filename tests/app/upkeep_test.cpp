#include "app/upkeep.h"

#include "maintenance/files.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(RefreshGameFiles, ListsTheOwnFolderAnew) {
    const TempDir dir;
    App app;
    app.exeDir = dir.path.string() + "/";
    app.gameFiles = {{"earlier", 1, 1}};
    writeText(dir.file("a"), "");
    refreshGameFiles(app);
    ASSERT_EQ(app.gameFiles.size(), 1u);
    EXPECT_EQ(app.gameFiles[0].name, "a");
    app.exeDir = dir.file("missing/");
    refreshGameFiles(app);
    EXPECT_TRUE(app.gameFiles.empty());
}

TEST(DeleteSave, TakesTheSaveAndSaysSo) {
    const TempDir dir;
    App app;
    app.savePath = dir.file("savegame.ovw");
    app.saveExists = true;
    writeText(app.savePath, "city");
    writeText(dir.file("settings.ini"), "kept");
    deleteSave(app);
    EXPECT_FALSE(app.saveExists);
    EXPECT_FALSE(fileExists(app.savePath));
    EXPECT_EQ(readText(dir.file("settings.ini")), "kept");
}

TEST(DeleteSave, ASaveThatCannotBeDeletedIsStillThere) {
    const TempDir dir;
    App app;
    app.savePath = dir.file("savegame.ovw");
    fs::create_directory(app.savePath);
    deleteSave(app);
    EXPECT_TRUE(app.saveExists);
    EXPECT_TRUE(fs::is_directory(app.savePath));
}

TEST(DeleteSave, ASaveThatIsGoneAlreadyIsGone) {
    const TempDir dir;
    App app;
    app.savePath = dir.file("savegame.ovw");
    app.saveExists = true;
    deleteSave(app);
    EXPECT_FALSE(app.saveExists);
}
