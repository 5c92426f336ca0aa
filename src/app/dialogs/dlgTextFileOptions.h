// Which kind of text files is to be opened.
#pragma once

#include <QDialog>
#include <cstdint>

class QRadioButton;

namespace orv::app {

class dlgTextFileOptions : public QDialog {
  Q_OBJECT

 public:
  static constexpr std::int16_t kCancelled = 0;
  static constexpr std::int16_t kPaneData = 1;
  static constexpr std::int16_t kShadingData = 2;

  explicit dlgTextFileOptions(QWidget* parent = nullptr);

  /// Shows the dialog until it is closed and returns the choice: `kCancelled` unless it was
  /// closed by OK.
  std::int16_t choose();

  std::int16_t TextFileType() const { return textFileType_; }

  void reject() override;

 protected:
  /// The close box asks first.
  void closeEvent(QCloseEvent* event) override;

 private:
  void OKButton_Click();
  void CancelButton_Click();

  QRadioButton* paneData_;
  QRadioButton* shadingData_;
  std::int16_t textFileType_ = kPaneData;
  bool closingByButton_ = false;
};

}  // namespace orv::app
