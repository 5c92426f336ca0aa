// Audits from the window: findings, their filters, and the way to the record.
#include <QClipboard>
#include <QComboBox>
#include <fstream>

#include "app/WindowTest.h"
#include "app/docks/audit/AuditDock.h"
#include "app/docks/spectra/SpectrumDock.h"

namespace orv::test {
namespace {

class AuditWindowTest : public WindowTest {
 protected:
  /// Every 5 nm, with a point that jumps at 655 nm or without; some makers are unknown.
  void write(const std::string& name, bool jumps, const std::string& maker) {
    std::string text = "SI Nanometers 4 1\nEmis= 0.84 0.84\n{ Manufacturer: " + maker + " }\n";
    for (int nm = 300; nm <= 2500; nm += 5) {
      const double T = (jumps && nm == 655 ? 0.9 : 0.7) - nm / 1e5 + 1e-3 * (name[0] - 'a');
      text += std::to_string(nm) + ' ' + std::to_string(T) + " 0.06 0.06\n";
    }
    std::ofstream(folder.path() / "panes" / name) << text;
  }

  void openPanesWithFaults() {
    std::filesystem::create_directory(folder.path() / "panes");
    write("a.txt", false, "Maker");
    write("b.txt", true, "Maker");
    write("c.txt", false, "Unknown");
    window.openPaths({file(folder.path() / "panes")});
  }

  app::FindingsTree& findings() { return find<app::FindingsTree>("FindingsTree"); }

  /// The first one.
  void clickFinding(Qt::MouseButton button = Qt::LeftButton) {
    clickItem(findings(), findings().topLevelItem(0)->child(0), button);
  }

  QStringList rules() {
    QStringList texts;
    for (int i = 0; i < findings().topLevelItemCount(); ++i) {
      const auto* rule = findings().topLevelItem(i);
      if (!rule->isHidden()) texts << rule->text(0);
    }
    return texts;
  }
};

TEST_F(AuditWindowTest, AFindingLeadsToItsRecordAndThePlaceOnItsCurve) {
  openPanesWithFaults();
  EXPECT_FALSE(find<QDockWidget>("AuditDock").isVisible());
  EXPECT_FALSE(isEnabled("mnuToolsAuditRecords"));
  trigger("mnuToolsAudit");
  EXPECT_TRUE(find<QDockWidget>("AuditDock").isVisible());
  EXPECT_EQ(rules(), (QStringList{"warning: jump (1)", "note: unknown-maker (1)"}));
  EXPECT_EQ(label("lblAudit"), "panes: 3 records: no errors, 1 warning, 1 note. 2 shown.");

  trigger("mnuViewSpectrum");
  clickFinding(Qt::RightButton);
  EXPECT_TRUE(grid().selectedRows().isEmpty());
  clickFinding();
  EXPECT_EQ(grid().selectedRows().low, 1);
  EXPECT_EQ(grid().selectedRows().high, 1);
  auto& spectra = find<app::SpectrumDock>("SpectrumDock");
  if (!spectra.isVisible()) trigger("mnuViewSpectrum");
  ASSERT_TRUE(QTest::qWaitFor([&] { return spectra.pointedWavelength().has_value(); }));
  EXPECT_NEAR(*spectra.pointedWavelength(), 0.655, 0.005);

  trigger("mnuToolsAuditRecords");
  EXPECT_EQ(rules(), QStringList("warning: jump (1)"));
  EXPECT_EQ(label("lblAudit"), "panes: 1 record: no errors, 1 warning, no notes. 1 shown.");
  dialogs.press("Yes");
  trigger("mnuFileRemove");
  clickFinding();
  EXPECT_EQ(status(), "The source that was audited is not open any more.");
}

TEST_F(AuditWindowTest, FindingsAreFilteredLeftOutAndCopied) {
  openPanesWithFaults();
  trigger("mnuToolsAudit");
  find<QComboBox>("cboSeverity").setCurrentIndex(1);
  EXPECT_EQ(rules(), QStringList("warning: jump (1)"));
  find<QComboBox>("cboSeverity").setCurrentIndex(0);
  find<QLineEdit>("txtFindings").setText("C.TXT");
  EXPECT_TRUE(QTest::qWaitFor([&] { return rules() == QStringList("note: unknown-maker (1)"); }));
  trigger("mnuAuditCopy");
  EXPECT_EQ(QGuiApplication::clipboard()->text(),
            "Severity\tRule\tName\tWhat is found\tField\tValue\tExpected\tAngle\tRecord\n"
            "note\tunknown-maker\tc.txt\tNobody knows who makes it\tsupplier\tUnknown\t\t\t"
            "panes c.txt");
  find<QLineEdit>("txtFindings").clear();
  ASSERT_TRUE(QTest::qWaitFor([&] { return rules().size() == 2; }));
  findings().topLevelItem(0)->setSelected(true);
  trigger("mnuAuditCopy");
  EXPECT_EQ(QGuiApplication::clipboard()->text().count(u'\n'), 1);
  findings().setCurrentItem(findings().topLevelItem(0)->child(0));
  trigger("mnuAuditLeaveOut");
  EXPECT_EQ(rules(), QStringList("note: unknown-maker (1)"));
  EXPECT_EQ(label("lblAudit"),
            "panes: 3 records: no errors, 1 warning, 1 note. 1 shown. Rules left out: jump.");
  app::frmMain another(session, ui);
  EXPECT_EQ(another.findChild<app::AuditDock*>("AuditDock")->leftOut(), QStringList("jump"));
  trigger("mnuAuditShowAll");
  EXPECT_EQ(rules().size(), 2);
}

}  // namespace
}  // namespace orv::test
