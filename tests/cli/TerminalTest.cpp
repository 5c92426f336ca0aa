// The program on a terminal.
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include "cli/CliTest.h"
#include "support/CaseFile.h"
#include "support/EncodedFile.h"

namespace orv::test {
namespace {

class TerminalTest : public CliTest {
 protected:
  /// Runs `orv` on a terminal and types each answer as soon as its prompt appears. Returns how it
  /// ended, and all that was to be seen.
  Ended onTerminal(const std::string& arguments,
                   std::vector<std::pair<std::string, std::string>> answers = {}) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
      const std::string line =
          "cd '" + folder.path().string() + "' && exec '" ORV_PROGRAM "' " + arguments;
      execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
      _exit(127);
    }
    Ended ended;
    std::size_t answered = 0;
    char buffer[4096];
    constexpr int kPatience = 20'000;
    pollfd watched{terminal, POLLIN, 0};
    while (poll(&watched, 1, kPatience) > 0) {
      const ssize_t count = read(terminal, buffer, sizeof buffer);
      if (count <= 0) break;  // the program has ended
      ended.out.append(buffer, static_cast<std::size_t>(count));
      if (!answers.empty() &&
          ended.out.find(answers.front().first, answered) != std::string::npos) {
        const std::string text = answers.front().second + "\n";
        EXPECT_EQ(write(terminal, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        answered = ended.out.size();
        answers.erase(answers.begin());
      }
    }
    close(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    ended.exit = WEXITSTATUS(status);
    return ended;
  }
};

TEST_F(TerminalTest, APasswordIsAskedForAndNotShown) {
  orv("new secret.mdb");
  setPassword(folder.path() / "secret.mdb", "password");
  for (const char* verb : {"check secret.mdb", "sql secret.mdb --queries"}) {
    const Ended right = onTerminal(verb, {{"Password: ", "password"}});
    EXPECT_EQ(right.exit, 0) << right.out;
    EXPECT_EQ(right.out.find("password"), std::string::npos) << right.out;
    EXPECT_EQ(onTerminal(verb, {{"Password: ", "wrong"}}).exit, 3);
  }
}

TEST_F(TerminalTest, QuestionsAreAskedUntilTheyAreAnswered) {
  makeDatabase();
  folder.write("coated.txt", "SI Microns 3 1\n{ Substrate Filename: a.txt }\n0.5 0.8 0.1 0.1\n");
  for (const auto& cells : casesOf("cli/questions.tsv", 12)) {
    std::vector<std::pair<std::string, std::string>> answers;
    for (std::size_t i = 3; !cells[i].empty(); i += 2) answers.emplace_back(cells[i], cells[i + 1]);
    const Ended run = onTerminal(cells[0], answers);
    EXPECT_EQ(std::to_string(run.exit), cells[1]) << cells[0];
    EXPECT_NE(run.out.find(cells[2]), std::string::npos) << cells[0] << run.out;
  }
}

TEST_F(TerminalTest, RowsAreSpelledOutInEveryFormat) {
  folder.write("a.txt", paneText("Red \x1b[31m\u202E"));
  for (const char* format : {"table", "tsv", "json"}) {
    const Ended list = onTerminal(std::string("list a.txt --format ") + format);
    EXPECT_NE(list.out.find("Red \\u001b[31m\\u202e"), std::string::npos) << list.out;
    EXPECT_EQ(list.out.find('\x1b'), std::string::npos);
  }
}

TEST_F(TerminalTest, TheBarIsDrawnAndWhatItNamesIsSpelledOut) {
  const std::string name = "a\t\n\x1b[31m.txt";
  const std::string longest = "Ωμ" + std::string(60, 'x') + "ñandú.txt";
  makeDatabase();
  folder.write(name, paneText());
  const Ended copy = onTerminal("copy '" + name + "' db.mdb --group Demo");
  EXPECT_NE(copy.out.find("\r\x1b[K[#"), std::string::npos) << copy.out;
  EXPECT_NE(copy.out.find("Writing a  \\u001b[31m.txt"), std::string::npos) << copy.out;
  EXPECT_EQ(copy.out.find("\x1b[31m"), std::string::npos);
  EXPECT_EQ(onTerminal("copy a.txt db.mdb --group Quiet --quiet").out, "");
  const Ended two = onTerminal("copy a.txt b.txt db.mdb --group Two");
  EXPECT_NE(two.out.find("\r\x1b[K[############............] 1/2 "), std::string::npos);
  for (const char* verb : {"compact db.mdb new.mdb", "check db.mdb"}) {
    EXPECT_THAT(onTerminal(verb).out, ::testing::ContainsRegex("\\[#+\\.+\\] 64/[1-9][0-9]+ "));
  }
  folder.write(longest, paneText());
  const Ended cut = onTerminal("copy '" + longest + "' db.mdb --group Demo");
  EXPECT_NE(cut.out.find("Writing Ωμ" + std::string(36, 'x') + "\r"), std::string::npos) << cut.out;
  EXPECT_NE(cut.out.find("Ready\r\x1b[Korv: not given"), std::string::npos) << cut.out;
}

}  // namespace
}  // namespace orv::test
