// Records that are there, files that are not as they should be, and the choice of records.
#include <fmt/format.h>

#include <fstream>

#include "cli/CliTest.h"
#include "store/jet/catalog/Database.h"
#include "support/EncodedFile.h"

namespace orv::test {
namespace {

class RecordsTest : public CliTest {
 protected:
  static constexpr int kPoints = 300;

  /// A database with the panes 1 and 2, whose spectra have many points.
  void makeLargeDatabase() {
    orv("new db.mdb");
    for (const char* name : {"a.txt", "b.txt"}) {
      std::string text = paneText(name);
      for (int i = 0; i < kPoints; ++i) text += fmt::format("{} 0.5 0.25 0.125\n", 3 + i * 0.001);
      folder.write(name, text);
    }
    ASSERT_EQ(orv("copy a.txt b.txt db.mdb --group Demo").exit, 0);
  }

  /// Spoils the root page of every index of a table.
  void damageIndexes(const std::string& table) {
    const std::string path = (folder.path() / "db.mdb").string();
    std::vector<store::jet::PageNumber> pages;
    {
      const auto database = store::jet::Database::open(path, "");
      for (const auto& index : database->table(table)->definition().realIndexes) {
        pages.push_back(index.root);
      }
    }
    constexpr std::streamoff kPageSize = 4096;
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    for (const auto page : pages) {
      file.seekp(static_cast<std::streamoff>(page) * kPageSize);
      file.write("\x07\x07", 2);
    }
    ASSERT_FALSE(pages.empty());
  }

  static int linesWith(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
  }
};

TEST_F(RecordsTest, RecordsThatAreThereAreReplacedOrSkippedWhenToldSo) {
  makeDatabase();
  folder.write("a.txt", paneText("Newer"));
  EXPECT_EQ(orv("copy a.txt b.txt db.mdb --group Demo").out, "0 records copied, 2 failed.\n");
  const Ended skipped = orv("copy a.txt b.txt db.mdb --group Demo --skip-existing");
  EXPECT_EQ(skipped.exit, 0) << skipped.err;
  EXPECT_EQ(skipped.out, "0 records copied, 2 skipped.\n");
  folder.write("c.txt", paneText("Third"));
  const Ended replaced = orv("copy a.txt c.txt db.mdb --group Demo --replace --no-integrate");
  EXPECT_EQ(replaced.exit, 0) << replaced.err;
  EXPECT_EQ(replaced.out, "1 record copied, 1 replaced.\n");
  EXPECT_EQ(orv("list db.mdb --columns PaneID,product_name --format csv").out,
            "PaneID,product_name\n1,Newer\n2,Beta\n3,Third\n");
  EXPECT_EQ(orv("copy a.txt db.mdb --group Demo --replace --skip-existing").exit, 2);
  EXPECT_EQ(orv("check db.mdb").exit, 0);
}

TEST_F(RecordsTest, FilesOfLaboratoriesAreReadWhenAskedFor) {
  std::filesystem::create_directory(folder.path() / "lab");
  folder.write("lab/a.txt", "SI nm 4,0 mm 1,0\nnm;T%;R%;R%\n300;10,5;5;6\n500;80;7;8\n");
  folder.write("lab/b.txt", paneText());
  folder.write("lab/c.txt", "SI Microns 4 1\n0.5 x\n");
  orv("new db.mdb");
  const Ended strict = orv("copy lab db.mdb --group Lab --no-integrate");
  EXPECT_EQ(strict.out, "1 record copied, 2 failed.\n");
  EXPECT_NE(
      strict.err.find("Invalid wavelength\na.txt, line 1, column 4: 'nm'. Write Nanometers. Or "
                      "have the file read tolerantly (--tolerant)."),
      std::string::npos)
      << strict.err;
  EXPECT_EQ(linesWith(strict.err, "Invalid wavelength"), 1);
  const Ended tolerant =
      orv("copy lab db.mdb --group Lab --skip-existing --tolerant --no-integrate");
  EXPECT_EQ(tolerant.exit, 1);
  EXPECT_EQ(tolerant.out, "1 record copied, 1 skipped, 1 failed.\n");
  EXPECT_NE(tolerant.err.find("c.txt, line 2, column 5"), std::string::npos) << tolerant.err;
  EXPECT_EQ(linesWith(tolerant.err, "orv: a.txt is read tolerantly: "), 1) << tolerant.err;
  EXPECT_EQ(orv("show db.mdb 2 --spectrum --format tsv").out,
            "wavelength (nm)\ttransmittance front\ttransmittance back\treflectance "
            "front\treflectance back\n300\t0.105\t0.105\t0.05\t0.06\n500\t0.8\t0.8\t0.07\t0.08\n");
  const Ended list = orv("list lab --format tsv");
  EXPECT_EQ(list.exit, 1);
  EXPECT_EQ(linesWith(list.err, " cannot be read: "), 2) << list.err;
}

TEST_F(RecordsTest, ADamagedIndexDoesNotHideRecords) {
  makeLargeDatabase();
  const std::string before = orv("show db.mdb 2 --spectrum --format tsv").out;
  const std::string ordered =
      "sql db.mdb \"SELECT PaneID, angle FROM Pane_spectral_data WHERE PaneID > 1 ORDER BY PaneID, "
      "angle\" --format tsv";
  const std::string rows = orv(ordered).out;
  damageIndexes("Pane_spectral_data");
  EXPECT_EQ(orv("check db.mdb").exit, 1);
  EXPECT_EQ(orv("compact db.mdb saved.mdb").exit, 3);
  const Ended repair = orv("compact db.mdb saved.mdb --repair");
  EXPECT_TRUE(repair.out.starts_with("Repaired db.mdb into saved.mdb, "))
      << repair.out << repair.err;
  EXPECT_TRUE(repair.out.ends_with(" kB: 15 tables, 749 rows, 23 indexes.\n")) << repair.out;
  EXPECT_EQ(orv("show saved.mdb 2 --spectrum --format tsv").out, before);
  const Ended show = orv("show db.mdb 2 --spectrum --format tsv");
  EXPECT_EQ(show.exit, 0) << show.err;
  EXPECT_EQ(show.out, before);
  EXPECT_EQ(linesWith(show.err, "orv: The table Pane_spectral_data of db.mdb has a damaged index"),
            1)
      << show.err;
  EXPECT_EQ(orv(ordered).out, rows);
  orv("new to.mdb");
  const Ended copy = orv("copy db.mdb to.mdb --group Demo");
  EXPECT_EQ(copy.out, "2 records copied.\n") << copy.err;
  EXPECT_EQ(linesWith(copy.err, "damaged index"), 1) << copy.err;
  EXPECT_EQ(orv("show to.mdb 2 --spectrum --format tsv").out, before);
  EXPECT_EQ(orv("sql to.mdb \"SELECT COUNT(*) AS n FROM Pane_spectral_data\" --format tsv").out,
            fmt::format("n\n{}\n", 2 * (kPoints + 3)));
}

TEST_F(RecordsTest, ConditionsChooseRecordsForEveryVerb) {
  makeDatabase();
  EXPECT_EQ(orv("list db.mdb --where product_name:bet --columns name --format tsv").out,
            "name\nb.txt\n");
  EXPECT_EQ(orv("list db.mdb --where \"thickness>3\" --columns name --format tsv").out, "name\n");
  EXPECT_EQ(orv("export db.mdb --where name=A.TXT --to out --quiet").out, "a.txt\n");
  EXPECT_EQ(orv("export db.mdb --where name=z --form csv --single none.csv").out,
            "Nothing is written to none.csv.\n");
  orv("new to.mdb");
  EXPECT_EQ(orv("copy db.mdb to.mdb --group G --where name=b.txt").out, "1 record copied.\n");
  const Ended deleted = orv("delete db.mdb --where name:a --where thickness:2..4 --yes");
  EXPECT_EQ(deleted.out, "1 record deleted.\n") << deleted.err;
  EXPECT_EQ(orv("list db.mdb --columns name --format tsv").out, "name\nb.txt\n");
  const Ended unknown = orv("list db.mdb --where colour=red");
  EXPECT_EQ(unknown.exit, 2);
  EXPECT_NE(
      unknown.err.find("There is no column \"colour\". There are: PaneID, name, product_name"),
      std::string::npos)
      << unknown.err;
  EXPECT_EQ(orv("list db.mdb --where colour").exit, 2);
  EXPECT_EQ(orv("copy db.mdb to.mdb 1 --group G --where name=b.txt").exit, 2);
  EXPECT_EQ(orv("delete db.mdb --yes").exit, 2);
}

TEST_F(RecordsTest, ConditionsNotUnderstoodWholeChooseNothing) {
  makeDatabase();
  const std::string before = orv("list db.mdb --format tsv").out;
  for (const char* condition :
       {"thickness<>5.85", "thickness>10mm", "thickness>>5", "thickness>", "thickness:x..y",
        "thickness:3..x", "thickness:3..", "thickness:", "thickness=thin", "thickness<nan",
        "name:", "name>a", "name<>a.txt"}) {
    const Ended deleted = orv(fmt::format("delete db.mdb --where '{}' --yes", condition));
    EXPECT_EQ(deleted.exit, 2) << condition;
    EXPECT_NE(deleted.err.find(fmt::format("\"{}\" is not understood", condition)),
              std::string::npos)
        << deleted.err;
  }
  EXPECT_EQ(orv("list db.mdb --format tsv").out, before);
  for (const char* part : {"thickness=3", "thickness:2.5..3", "thickness:3", "name=a.txt"}) {
    EXPECT_NE(orv(fmt::format("list db.mdb --where {} --columns name", part)).out.find("a.txt"),
              std::string::npos)
        << part;
  }
}

TEST_F(RecordsTest, ConditionsChooseFilesByWhatTheyHold) {
  std::filesystem::create_directory(folder.path() / "lab");
  folder.write("lab/a.txt", paneText("Alpha"));
  folder.write("lab/b.txt", paneText("Beta") + "{ Angle of Incidence: 40 }\n");
  folder.write("lab/c.txt", "SI Microns thick\n");
  const Ended chosen =
      orv("list lab --where 'angle>30' --columns Filename,product_name,thickness --format csv");
  EXPECT_EQ(chosen.out, "Filename,product_name,thickness\nb.txt,Beta,3\n");
  EXPECT_EQ(chosen.exit, 1);
  EXPECT_EQ(linesWith(chosen.err, "orv: c.txt cannot be read: "), 1) << chosen.err;
  orv("new db.mdb");
  const Ended copied = orv("copy lab db.mdb --group G --where product_name=alpha --no-integrate");
  EXPECT_EQ(copied.out, "1 record copied.\n") << copied.err;
  EXPECT_EQ(orv("list lab/a.txt --columns colour").exit, 2);
}

TEST_F(RecordsTest, QuietRunsTellFailuresOnly) {
  makeDatabase();
  orv("new to.mdb");
  const Ended quiet = orv("copy db.mdb to.mdb --group G --quiet");
  EXPECT_EQ(quiet.out + quiet.err, "");
  const Ended total = orv("copy db.mdb a.txt to.mdb --group Other");
  EXPECT_EQ(total.out, "2 records copied, 1 failed.\n") << "one line for all sources";
  const Ended failed = orv("copy a.txt to.mdb --group G --quiet");
  EXPECT_EQ(failed.out, "");
  EXPECT_TRUE(failed.err.starts_with("orv: The record a.txt could not be copied")) << failed.err;
  EXPECT_EQ(orv("delete to.mdb 1 --yes --quiet").out, "");
}

TEST_F(RecordsTest, TablesAreListedAndUnknownOnesNameThem) {
  makeDatabase();
  const std::string tables = orv("tables db.mdb --format csv").out;
  EXPECT_NE(tables.find("Pane_spectral_data,table,6\n"), std::string::npos) << tables;
  EXPECT_NE(tables.find("qryPaneImport,query,\n"), std::string::npos) << tables;
  const Ended unknown = orv("sql db.mdb Panes");
  EXPECT_EQ(unknown.exit, 2);
  EXPECT_NE(unknown.err.find(" There are: Frame, FrameTypes, "), std::string::npos) << unknown.err;
  EXPECT_EQ(
      shell("echo 'SELECT name FROM Pane WHERE PaneID = 2' | orv sql db.mdb - --format csv").out,
      "name\nb.txt\n");
  EXPECT_EQ(
      orv("sql db.mdb \"SELECT 'a, \"\"b\"\"' AS x FROM Pane WHERE PaneID = 1\" --format csv").out,
      "x\n\"a, b\"\n");
}

TEST_F(RecordsTest, PipesAreNotWaitedForAndPasswordsAreAskedFor) {
  orv("new db.mdb");
  for (const char* arguments :
       {"list pipe", "sql pipe Pane", "check pipe", "copy pipe db.mdb --group G"}) {
    const Ended run =
        shell(std::string("[ -e pipe ] || mkfifo pipe; timeout 20 '" ORV_PROGRAM "' ") + arguments);
    EXPECT_EQ(run.exit, 3) << arguments;
    EXPECT_NE(run.err.find("is no file, but a pipe or a device."), std::string::npos) << run.err;
  }
  const Ended inside = orv("compact . new.mdb");
  EXPECT_EQ(inside.exit, 3);
  EXPECT_EQ(inside.err, "orv: \".\" is no file, but a folder.\n");
  { store::Connection::create((folder.path() / "secret.mdb").string()); }
  setPassword(folder.path() / "secret.mdb", "password");
  for (const char* verb : {"info", "list", "sql", "tables", "check"}) {
    const std::string call = std::string(verb) + " secret.mdb";
    const Ended none = orv(verb == std::string("sql") ? call + " --queries" : call);
    EXPECT_EQ(none.exit, 3) << verb;
    EXPECT_NE(none.err.find("needs a password: give it with --password-file"), std::string::npos)
        << none.err;
  }
  const Ended given = orv("list secret.mdb --password password");
  EXPECT_NE(given.err.find("is a database, but no ORV database"), std::string::npos) << given.err;
}

TEST_F(RecordsTest, CompletionsKnowEveryVerbAndOption) {
  for (const char* shell : {"bash", "zsh", "fish"}) {
    const std::string script = orv(std::string("completion ") + shell).out;
    for (const char* word : {"copy", "tables", "skip-existing", "password-file", "columns"}) {
      EXPECT_NE(script.find(word), std::string::npos) << shell << word;
    }
  }
  const Ended bash = shell(
      "orv completion bash > orv.bash; bash -c '. ./orv.bash; "
      "complete() { COMP_WORDS=(orv $@); COMP_CWORD=$#; _orv; echo \"${COMPREPLY[@]}\"; }; "
      "complete copy --repl; complete tab; complete audit x --severity wa; "
      "complete audit x --without units,ener; complete list --format \"\"'");
  EXPECT_EQ(bash.out, "--replace\ntables\nwarning\nunits,energy\ncsv json table tsv\n") << bash.err;
  EXPECT_NE(orv("completion zsh").out.find("'copy --standard') values=(en410 iso9050 nfrc300)"),
            std::string::npos);
  EXPECT_NE(orv("completion fish").out.find(" -x -a 'csv json text'"), std::string::npos);
}

TEST_F(RecordsTest, TheStandardInputIsAFileOfRecords) {
  folder.write("a.txt", paneText("Alpha"));
  std::string filmed = paneText("Filmed");
  filmed += "{ Substrate Filename: nowhere.txt }\n";
  folder.write("filmed.txt", filmed);
  orv("new db.mdb");
  const Ended copied = shell("orv copy - db.mdb --name one.txt --group Demo <a.txt");
  EXPECT_EQ(copied.exit, 0) << copied.err;
  EXPECT_EQ(orv("list db.mdb --columns name --format csv").out, "name\none.txt\n");
  EXPECT_EQ(shell("orv list - --format csv <a.txt").out,
            "id,name,product,group,supplier\nstdin.txt,stdin.txt,Alpha,,\n");
  const Ended shown = shell("orv show - --spectrum --format csv <a.txt");
  EXPECT_NE(shown.out.find("\n500,0.8,0.8,0.07,0.08\n"), std::string::npos) << shown.err;
  EXPECT_NE(shell("orv info - <a.txt").out.find("standard input\n"), std::string::npos);
  const Ended products = shell(
      "orv new to.mdb; orv export db.mdb --form json --single - --quiet | "
      "orv copy - a.txt to.mdb --group Demo");
  EXPECT_NE(products.out.find("2 records copied."), std::string::npos) << products.err;
  EXPECT_EQ(orv("list to.mdb --columns name,NAME --format csv").out, "name\na.txt\none.txt\n");
  const Ended named = shell(
      "(printf '\\357\\273\\277'; orv export db.mdb --form json --single - --quiet) | "
      "orv list - --name two --columns Filename --format csv");
  EXPECT_EQ(named.out, "Filename\ntwo.json\n") << named.err;
  const Ended missing = shell("orv copy - db.mdb --name f.txt --group Demo <filmed.txt");
  EXPECT_NE(missing.err.find("'nowhere.txt' in the folder '.'"), std::string::npos) << missing.err;

  setPassword(folder.path() / "to.mdb", "Sesame 7");
  EXPECT_EQ(shell("echo 'Sesame 7' | orv info to.mdb --password-file -").exit, 0);
  EXPECT_EQ(shell("echo 'Sesame 8' | orv info to.mdb --password-file -").exit, 3);
  for (int i = 0; i < kPoints * 10; ++i)
    filmed += fmt::format("{} 0.5 0.25 0.125\n", 3 + i * 0.001);
  folder.write("long.txt", filmed);
  const Ended unread = shell(
      "TMPDIR=$PWD; export TMPDIR; orv list - <a.txt; "
      "(sleep 0.1; orv show - --spectrum <long.txt; echo $? >ended) | true; cat ended; ls -d "
      "orv-*");
  EXPECT_NE(unread.out.find("\n141\n"), std::string::npos) << unread.out << unread.err;
  EXPECT_EQ(unread.exit, 2) << "nothing is left behind: " << unread.out;
}

TEST_F(RecordsTest, AStandardStreamIsRefusedWhereItMakesNoSense) {
  makeDatabase();
  for (const char* arguments :
       {"new -", "sql - Pane", "tables -", "check -", "compact db.mdb -", "compact - x.mdb",
        "delete - 1 --yes", "copy a.txt - --group G", "list - <db.mdb",
        "copy - - db.mdb --group G <a.txt", "list a.txt --name b.txt",
        "list - --name b/c.txt <a.txt", "list - --name .. <a.txt", "list - --name x.mdb <a.txt",
        "list - --name $(printf %0300d 0) <a.txt", "list - --password-file - <a.txt",
        "sql db.mdb - --password-file - <a.txt"}) {
    const Ended run = orv(arguments);
    EXPECT_EQ(run.exit, 2) << arguments << run.err;
    EXPECT_NE(run.err.find("standard input"), std::string::npos) << arguments << run.err;
  }
  EXPECT_EQ(orv("list -").exit, 3) << "nothing comes";
  for (const auto& [call, reason] :
       {std::pair("orv list - <.", "cannot be read: Is a directory"),
        std::pair("TMPDIR=nowhere orv list - <a.txt", "TMPDIR names the folder")}) {
    const Ended failed = shell(call);
    EXPECT_EQ(failed.exit, 3) << call;
    EXPECT_NE(failed.err.find(reason), std::string::npos) << failed.err;
  }
}

TEST_F(RecordsTest, ColumnsAreShownOfWhatIsDeletedAndRefusedWhereRecordsAreTakenWhole) {
  makeDatabase();
  const Ended deleted =
      orv("delete db.mdb --where name:b --columns 'product_name, thickness' --yes");
  EXPECT_EQ(deleted.out,
            "product_name  thickness\n------------  ---------\nBeta                  3\n"
            "1 record deleted.\n")
      << deleted.err;
  for (const char* verb : {"export db.mdb --to out", "copy a.txt db.mdb --group G"}) {
    const Ended refused = orv(std::string(verb) + " --columns name");
    EXPECT_EQ(refused.exit, 2);
    EXPECT_NE(refused.err.find("takes records whole"), std::string::npos) << refused.err;
    EXPECT_EQ(orv(std::string(verb) + " --help").out.find("--columns"), std::string::npos);
  }
  EXPECT_EQ(orv("delete db.mdb 1 --columns colour --yes").exit, 2);
  EXPECT_NE(orv("show db.mdb").out.find("Alpha"), std::string::npos) << "the only one is meant";
}

}  // namespace
}  // namespace orv::test
