#include "baskets/BasketExport.h"
#include "common/RuntimeError.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::ReadFile;
using test::TempDir;
using test::WriteFile;

TEST(BasketExportTest, ProposedNameDropsEveryBlank) {
    EXPECT_EQ(ProposedExportFileName("My  Tech Basket "), "MyTechBasket.txt");
    EXPECT_EQ(ProposedExportFileName("Plain"), "Plain.txt");
    EXPECT_EQ(ProposedExportPath("/data", "A B"), std::filesystem::path("/data/Baskets/AB.txt"));
}

TEST(BasketExportTest, WritesThreeFieldsAndCrLfAfterEveryLine) {
    TempDir dir;
    ExportBasketFile(dir / "b.txt", {{"ABC", "100", "NYSE"}, {"WXYZ", "250", "ARCA"}});
    EXPECT_EQ(ReadFile(dir / "b.txt"), "ABC,100,NYSE\r\nWXYZ,250,ARCA\r\n");
}

TEST(BasketExportTest, OverwritesAnExistingFileWithoutAsking) {
    TempDir dir;
    WriteFile(dir / "b.txt", std::string(5000, 'x'));
    ExportBasketFile(dir / "b.txt", {{"A", "1", "NYSE"}});
    EXPECT_EQ(ReadFile(dir / "b.txt"), "A,1,NYSE\r\n");
}

TEST(BasketExportTest, EmptyBasketGivesAnEmptyFile) {
    TempDir dir;
    ExportBasketFile(dir / "b.txt", {});
    EXPECT_EQ(ReadFile(dir / "b.txt"), "");
}

TEST(BasketExportTest, CreatesTheBasketsFolderAndWritesWindows1252) {
    TempDir dir;
    const auto path = ProposedExportPath(dir.path(), "New One");
    ExportBasketFile(path, {{"\xC3\x89TE", "1", "NYSE"}});
    EXPECT_EQ(ReadFile(path), "\xC9TE,1,NYSE\r\n");
}

TEST(BasketExportTest, UnwritablePathIsAnAccessError) {
    TempDir dir;
    WriteFile(dir / "file", "x");
    EXPECT_THROW(ExportBasketFile(dir / "file" / "b.txt", {{"A", "1", "NYSE"}}), RuntimeError);
}

} // namespace
} // namespace wicker
