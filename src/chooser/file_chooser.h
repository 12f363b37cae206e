// WinSeek: the program's own file window, shown modally by every command
// that picks a file. It is hidden, not destroyed, between uses, so that it
// keeps its drive, folder and filter, and the caller reads the chosen path
// from Text2 once the window has returned.
#pragma once

#include <QDialog>
#include <QStringList>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace marlith {

struct AppState;

class WinSeek : public QDialog {
    Q_OBJECT
  public:
    explicit WinSeek(AppState& state, QWidget* parent = nullptr);

    // Runs at every showing: list, filter, name and caption for SeekMode.
    void Form_Activate();
    void OkCmd_Click();
    void CancelCmd_Click();

    // The folder of the lists; false (and no change) when it can't be opened.
    bool SetDirPath(const QString& path);
    QString dirPath() const { return dirPath_; }
    // The name box: on return after Ok, the full path.
    QString text2() const;

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Form_Load();
    void drvList_Change(int index);
    void dirList_Change();
    void dirList_LostFocus();
    void dirList_Open(QListWidgetItem* item);
    void filList_Click(QListWidgetItem* item);
    void filList_DblClick(QListWidgetItem* item);
    void txtSearchSpec_Change(const QString& text);
    void FillDrives();
    void ShowDirList();
    void RefreshDirList();
    void ShowFilList();
    void ShowDriveOfDirList();

    AppState& state_;
    QWidget* picture1_;
    QLabel* lblCriteria_;
    QComboBox* txtSearchSpec_;
    QComboBox* drvList_;
    QListWidget* dirList_;
    QListWidget* filList_;
    QLabel* label1_;
    QLineEdit* text2_;
    QPushButton* okCmd_;
    QPushButton* cancelCmd_;
    QStringList drives_;
    QString dirPath_;
    QString pattern_ = QStringLiteral("*.bmp");
    // Keeps the drive list quiet while code sets it.
    bool disableEvent_ = false;
};

} // namespace marlith
