#include "BasketTestDb.h"
#include "baskets/BasketExport.h"
#include "baskets/BasketImport.h"
#include "support/RecordingMessageBoxes.h"
#include "support/Subprocess.h"
#include "support/TempDir.h"

#include <fstream>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace wicker {
namespace {

using test::RecordingMessageBoxes;
using test::WriteFile;

class BasketImportTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& bytes) {
        const auto p = t.dir / "in.txt";
        WriteFile(p, bytes);
        return p;
    }

    BasketImportRequest request(const std::filesystem::path& p, const std::string& name = "Imp") {
        return {name, "IMP", p.string(), "NYSE", "ARCA"};
    }

    // Runs the whole import and its report; returns the basket number (0 when refused).
    int32_t importAll(const BasketImportRequest& req, size_t stepLines = 1000) {
        ImportFocus focus;
        auto import = StartBasketImport(*t.db, boxes, req, focus);
        lastFocus = focus;
        if (!import) {
            return 0;
        }
        while (import->step(stepLines)) {
        }
        ReportBasketImport(boxes, *import);
        indexShares = import->indexShares();
        linesImported = import->linesImported();
        return import->basketNum();
    }

    test::BasketTestDb t;
    RecordingMessageBoxes boxes;
    ImportFocus lastFocus = ImportFocus::None;
    std::map<std::string, int32_t> indexShares;
    uint64_t linesImported = 0;
};

struct RefusalCase {
    const char* name;
    BasketImportRequest request;
    std::string message;
    ImportFocus focus;
};

class ImportRefusalTest : public BasketImportTest,
                          public testing::WithParamInterface<RefusalCase> {};

TEST_P(ImportRefusalTest, EmptyBoxIsRefusedAndNothingStored) {
    EXPECT_EQ(importAll(GetParam().request), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, GetParam().message);
    EXPECT_EQ(boxes.shown()[0].title, "Basket Import Error");
    EXPECT_EQ(lastFocus, GetParam().focus);
    EXPECT_EQ(t.count("tblBaskets"), 0);
}

INSTANTIATE_TEST_SUITE_P(Boxes, ImportRefusalTest,
                         testing::Values(RefusalCase{"NoName",
                                                     {"", "B", "f.txt", "NYSE", "ARCA"},
                                                     "Please enter a name for this basket.",
                                                     ImportFocus::BasketName},
                                         RefusalCase{"NoButton",
                                                     {"N", "", "f.txt", "NYSE", "ARCA"},
                                                     "Please enter a button name for this basket.",
                                                     ImportFocus::ButtonName},
                                         RefusalCase{"NoFile",
                                                     {"N", "B", "", "NYSE", "ARCA"},
                                                     "Please select a file to import from.",
                                                     ImportFocus::FileName}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(BasketImportTest, ExistingNameIsRefusedWhateverItsCase) {
    t.addBasket("Tech");
    EXPECT_EQ(importAll(request(file("A,1,NYSE\r\n"), "TECH")), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(
        boxes.shown()[0].text,
        "There is an existing basket with this name.\nPlease choose a different basket name.");
    EXPECT_EQ(boxes.shown()[0].title, "Error loading basket.");
    EXPECT_EQ(lastFocus, ImportFocus::BasketName);
    EXPECT_EQ(t.count("tblBaskets"), 1);
}

TEST_F(BasketImportTest, MissingFileIsReportedAndLeavesNoBasket) {
    EXPECT_EQ(importAll(request(t.dir / "missing.txt")), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Run-time error '53':\n\nFile not found");
    EXPECT_EQ(lastFocus, ImportFocus::FileName);
    EXPECT_EQ(t.count("tblBaskets"), 0);
}

TEST_F(BasketImportTest, BasketRowIsTypeBAndNeverOnAButton) {
    const int32_t n = importAll(request(file("IBM,100,NYSE\r\n")));
    ASSERT_NE(n, 0);
    EXPECT_EQ(t.rows("SELECT strBasketName, strButtonName, intOnButton, chType FROM tblBaskets"),
              (std::vector<std::string>{"Imp|IMP|0|B"}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(BasketImportTest, EmptyDestinationsGetListedOrOtcDefaults) {
    const int32_t n = importAll(request(file("MSFT,100,\r\n"
                                             "IBM,200,\r\n"
                                             "GE,300\r\n"
                                             "ORCL,400\r\n")));
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"MSFT|100|ARCA|<null>", "IBM|200|NYSE|<null>",
                                                    "GE|300|NYSE|<null>", "ORCL|400|ARCA|<null>"}));
}

TEST_F(BasketImportTest, DefaultsAreTheDialogsChoices) {
    auto req = request(file("MSFT,1,\r\nIBM,2,\r\n"));
    req.listedDestination = "AMEX";
    req.otcDestination = "INET";
    const int32_t n = importAll(req);
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"MSFT|1|INET|<null>", "IBM|2|AMEX|<null>"}));
}

TEST_F(BasketImportTest, FourthFieldGoesToTheIndexSharesMapNotTheTable) {
    const int32_t n =
        importAll(request(file("IBM,10,NYSE,5000\r\nGE,5,NYSE,\r\nIBM,1,NYSE,7\r\n")));
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"IBM|10|NYSE|<null>", "GE|5|NYSE|<null>",
                                                    "IBM|1|NYSE|<null>"}));
    // A later line of the same symbol replaces the earlier entry; an empty field adds none.
    EXPECT_EQ(indexShares, (std::map<std::string, int32_t>{{"IBM", 7}}));
}

TEST_F(BasketImportTest, UnknownDestinationIsImportedAndReportedOnce) {
    const int32_t n = importAll(request(file("A,1,FOO\r\nB,2,NYSE\r\nC,3,FOO\r\nD,4,nyse\r\n")));
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"A|1|FOO|<null>", "B|2|NYSE|<null>",
                                                    "C|3|FOO|<null>", "D|4|nyse|<null>"}));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "FOO\nnyse\n");
    EXPECT_EQ(boxes.shown()[0].title, "Invalid Destination");
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Exclamation);
}

TEST_F(BasketImportTest, BlankBeforeACommaIsKept) {
    const int32_t n = importAll(request(file("IBM ,100,NYSE\r\n")));
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"IBM |100|NYSE|<null>"}));
}

TEST_F(BasketImportTest, EmptyLineStopsTheImportAndKeepsTheLinesBefore) {
    const int32_t n = importAll(request(file("A,1,NYSE\r\n\r\nB,2,NYSE\r\n")));
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"A|1|NYSE|<null>"}));
    EXPECT_EQ(linesImported, 1u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].title, "Basket Import Error");
    EXPECT_NE(boxes.shown()[0].text.find("Line 2 of the file could not be imported."),
              std::string::npos);
    EXPECT_NE(boxes.shown()[0].text.find("Basket \"Imp\" was created with the 1 line before it."),
              std::string::npos)
        << boxes.shown()[0].text;
}

TEST_F(BasketImportTest, QuantityTheDatabaseCannotConvertStopsAtThatLine) {
    const int32_t n =
        importAll(request(file("A,1,NYSE\r\nB,2.5,NYSE\r\nC,abc,NYSE\r\nD,4,NYSE\r\n")), 1);
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"A|1|NYSE|<null>", "B|2.5|NYSE|<null>"}));
    EXPECT_NE(boxes.shown().at(0).text.find("Line 3 "), std::string::npos);
}

TEST_F(BasketImportTest, UnknownDestinationsAreStillReportedAfterAFailure) {
    importAll(request(file("A,1,FOO\r\nB,x,NYSE\r\n")));
    ASSERT_EQ(boxes.shown().size(), 2u);
    EXPECT_EQ(boxes.shown()[1].text, "FOO\n");
}

TEST_F(BasketImportTest, ApostropheInASymbolFailsThatLine) {
    const int32_t n = importAll(request(file("A,1,NYSE\r\nO'X,2,NYSE\r\n")));
    EXPECT_EQ(t.lines(n).size(), 1u);
    EXPECT_NE(boxes.shown().at(0).text.find("Line 2 "), std::string::npos);
}

TEST_F(BasketImportTest, ExportThenImportKeepsSymbolsQuantitiesAndDestinations) {
    const std::vector<BasketLine> lines = {
        {"IBM", "100", "NYSE"}, {"MSFT", "2.5", "ARCA"}, {"\xC3\x89TE", "7", "FOO"}};
    ExportBasketFile(t.dir / "out.txt", lines);
    const int32_t n = importAll(request(t.dir / "out.txt"));
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"IBM|100|NYSE|<null>", "MSFT|2.5|ARCA|<null>",
                                                    "\xC3\x89TE|7|FOO|<null>"}));
}

TEST_F(BasketImportTest, ReadBackFailureShowsTheMessageWithItsTypo) {
    // Another writer removes every new basket row at once, so it cannot be read back.
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open((t.dir / "baskets.mdb").c_str(), &raw), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(raw,
                           "CREATE TRIGGER gone AFTER INSERT ON tblBaskets BEGIN DELETE FROM "
                           "tblBaskets WHERE intBasketNum = NEW.intBasketNum; END",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(raw);
    EXPECT_EQ(importAll(request(file("A,1,NYSE\r\n"))), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Cound not retrieve basket number of imported basket. "
                                     "Import not complete.\n0 ");
    EXPECT_EQ(boxes.shown()[0].title, "Basket Import Error.");
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

TEST_F(BasketImportTest, CancelKeepsTheLinesOfTheStepsDone) {
    std::string bytes;
    for (int i = 0; i < 50; ++i) {
        bytes += "S" + std::to_string(i) + "," + std::to_string(i + 1) + ",NYSE\r\n";
    }
    ImportFocus focus;
    auto import = StartBasketImport(*t.db, boxes, request(file(bytes)), focus);
    ASSERT_TRUE(import);
    EXPECT_TRUE(import->step(20));
    EXPECT_LT(import->bytesRead(), import->totalBytes());
    import->cancel();
    EXPECT_FALSE(import->step(20));
    EXPECT_TRUE(import->cancelled());
    ReportBasketImport(boxes, *import);
    EXPECT_EQ(t.lines(import->basketNum()).size(), 20u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "Import cancelled. Basket \"Imp\" was created with the first 20 lines of the file.");
}

TEST_F(BasketImportTest, KilledHalfWayLeavesNoBasketAndTheNextImportIsWhole) {
    std::string bytes;
    for (int i = 0; i < 1000; ++i) {
        bytes += "S" + std::to_string(i) + ",1,NYSE\r\n";
    }
    const std::string path = file(bytes).string();
    {
        test::Subprocess killed({test::FolderTool(), "import", t.dir.path().string(), path, "300"});
        ASSERT_TRUE(killed.waitFor("paused"));
        killed.killHard();
    }
    EXPECT_EQ(t.count("tblBaskets"), 0);
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
    test::Subprocess whole({test::FolderTool(), "import", t.dir.path().string(), path});
    EXPECT_EQ(whole.wait(), 0);
    EXPECT_EQ(t.count("tblBaskets"), 1);
    EXPECT_EQ(t.count("tblBasketDetails"), 1000);
}

// ---- Bad files: never a crash, the failure is reported, the lines before it stay. ----

TEST_F(BasketImportTest, BinaryFileIsReportedNotCrashed) {
    std::mt19937 rng(7);
    std::string bytes(1 << 20, '\0');
    for (auto& c : bytes) {
        c = static_cast<char>(rng() & 0xFF);
    }
    importAll(request(file(bytes)));
    ASSERT_FALSE(boxes.shown().empty());
    EXPECT_EQ(boxes.shown()[0].title, "Basket Import Error");
    EXPECT_NE(boxes.shown()[0].text.find("could not be imported"), std::string::npos);
}

TEST_F(BasketImportTest, FiftyMegabyteSingleLineIsRefusedAsOverlong) {
    const auto p = t.dir / "big.txt";
    {
        std::ofstream out(p, std::ios::binary);
        const std::string chunk(1 << 20, 'Z');
        for (int i = 0; i < 50; ++i) {
            out << chunk;
        }
    }
    const int32_t n = importAll(request(p));
    EXPECT_EQ(t.lines(n).size(), 0u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.shown()[0].text.find("Line 1 of the file could not be imported."),
              std::string::npos);
    EXPECT_NE(boxes.shown()[0].text.find("longer than 1024 characters"), std::string::npos);
}

TEST_F(BasketImportTest, HundredThousandLinesWithOverlongIgnoredFieldsImportInSteps) {
    const auto p = t.dir / "many.txt";
    {
        std::ofstream out(p, std::ios::binary);
        const std::string tail(300, 'x');
        for (int i = 0; i < 100000; ++i) {
            out << "S" << i % 1000 << "," << i << ",NYSE,," << tail << "," << tail << "\r\n";
        }
    }
    ImportFocus focus;
    auto import = StartBasketImport(*t.db, boxes, request(p), focus);
    ASSERT_TRUE(import);
    int steps = 0;
    uint64_t read = 0;
    while (import->step(5000)) {
        EXPECT_GT(import->bytesRead(), read) << "the progress moves on every step";
        read = import->bytesRead();
        ++steps;
    }
    EXPECT_EQ(steps, 20);
    EXPECT_EQ(import->bytesRead(), import->totalBytes());
    EXPECT_FALSE(import->failure());
    EXPECT_FALSE(import->cancelled());
    EXPECT_EQ(import->linesImported(), 100000u);
    EXPECT_EQ(t.count("tblBasketDetails"), 100000);
}

TEST_F(BasketImportTest, OverlongSymbolDeepInALongFileStopsThere) {
    const auto p = t.dir / "many.txt";
    {
        std::ofstream out(p, std::ios::binary);
        for (int i = 1; i <= 20000; ++i) {
            if (i == 15000) {
                out << std::string(5000, 'S') << ",1,NYSE\r\n";
            } else {
                out << "S,1,NYSE\r\n";
            }
        }
    }
    const int32_t n = importAll(request(p), 7000);
    EXPECT_EQ(t.lines(n).size(), 14999u);
    EXPECT_NE(boxes.shown().at(0).text.find("Line 15000 "), std::string::npos);
}

TEST_F(BasketImportTest, SymbolLongerThanTheColumnFailsInTheDatabase) {
    const int32_t n = importAll(request(file("OK,1,NYSE\r\nABCDEFGHIJK,1,NYSE\r\n")));
    EXPECT_EQ(t.lines(n).size(), 1u);
    EXPECT_NE(boxes.shown().at(0).text.find("Line 2 "), std::string::npos);
}

} // namespace
} // namespace wicker
