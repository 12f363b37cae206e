// Form1: the main window, with the position text, the tool strips, the style
// list, the book panel, the diagram and the menus.
#pragma once

#include "core/app_state.h"
#include "drawing/diagram.h"

#include <QMainWindow>
#include <QPixmap>
#include <array>
#include <functional>
#include <map>
#include <memory>

class QAction;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QLockFile;
class QMenu;

namespace marlith {

class BookPanel;
class DiagramView;
class Form6;
class Form8;
class Form9;
class HelpWindow;
class ToolImage;
class WinSeek;

class Form1 : public QMainWindow {
    Q_OBJECT
  public:
    explicit Form1(AppState& state, QWidget* parent = nullptr);
    ~Form1() override;

    // The start sequence; `arguments` is the command line without the program.
    void Form_Load(const QStringList& arguments);
    // The stop sequence; closing the window runs both.
    void Form_QueryUnload();
    void Form_Unload();

    void ReadSettings();
    void WriteSettings();
    void AddRecent(const QString& path);
    void DrawBoard();
    void Build();
    void PicMove();

    void MNNew_Click();
    void MNStart_Click();
    void MNRefresh_Click();
    void MNExit_Click();
    void MNAbout_Click();
    void MNContents_Click();
    void MNstyle_Click();
    void Combo1_Click();
    void Command9_Click();

    // Opens the book named by bookFile, closing any open book first.
    void CmdLoad();
    void MNLoad_Click();
    void MNClose_Click();
    void MNFileList_Click(int index);
    // Text1 receives a position of the book, its rows completed.
    void ShowPosition(const QString& board);
    // The name put into the style list as if typed there with Enter.
    void ChooseStyleByName(const QString& name);
    BookPanel* bookPanel() const { return frame2_; }

    void CmdSave();
    void MNSave_Click();
    void MNSaveAs_Click();
    void MNPicture_Click();
    void MNMarlith_Click();
    void MNPaste_Click();

    void PicMain_MouseDown(int button, int shift, double x, double y);
    void PicMain_MouseMove(int button, int shift, double x, double y);
    void PicMain_MouseUp(int button, int shift, double x, double y);

    // The caret behind the last character of Text1, and Text1 with the focus.
    void CaretToText1();
    void MoveCaretToEnd();
    // The View window, created hidden when the palette is first drawn.
    Form6* form6();
    void DrawView();
    DiagramView* picMain() const { return picMain_; }

    // The engines: the Popeye and Crafty windows, created hidden at first use.
    void MNpy_Click();
    void MNCrafty_Click();
    Form8* form8();
    Form9* form9();

    // The child windows that follow the main window when it is minimised,
    // by their number (3, 6, 7, 8, 9); later windows register here.
    void setChildWindow(int number, QWidget* window);

    QAction* action(const QString& name) const;
    Diagram& diagram() { return diagram_; }
    AppState& state() { return state_; }

    // How a further instance is started (replaced by tests).
    std::function<void(const QStringList&)> startInstance;
    // Shows the "Warning" message box (replaced by tests).
    std::function<void(const QString&)> warn;
    // Runs the file chooser modally (replaced by tests, which drive it).
    std::function<void(WinSeek&)> runChooser;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void CreateMenus();
    void CreateControls();
    void PlaceControls();
    bool Text1_KeyPress(const QString& typed, int key);
    void Text1_KeyDown(int key);
    bool Combo1_KeyPress(int key);
    void Form_Resize();
    void ToolClicked(const std::function<void()>& command, bool keepsFocus);
    void ShowFileList();
    void ShowStyleName();
    bool MenuShortcutWins(QKeyEvent* key) const;
    // Shows the file chooser for a purpose; true and the path after Ok.
    bool ShowChooser(int mode, QString& path);
    // Looks for the engines and Py.dat at start; the clean-up at the end.
    void DetectEngines();
    void EngineCleanUp();

    AppState& state_;
    Diagram diagram_;
    QLabel* label3_ = nullptr;
    QLineEdit* text1_ = nullptr;
    QComboBox* combo1_ = nullptr;
    BookPanel* frame2_ = nullptr;
    QWidget* picture3_ = nullptr;
    QWidget* picture4_ = nullptr;
    DiagramView* picMain_ = nullptr;
    std::array<ToolImage*, 9> image4_{};
    std::array<ToolImage*, 9> image7_{};
    ToolImage* image6_ = nullptr;
    std::array<QAction*, 4> mnFileList_{};
    std::map<QString, QAction*> actions_;
    std::array<QWidget*, 11> childWindows_{};
    QString hiddenForms_;
    HelpWindow* helpWindow_ = nullptr;
    Form6* form6_ = nullptr;
    // Created at first use, then hidden between uses so that it remembers.
    WinSeek* winSeek_ = nullptr;
    Form8* form8_ = nullptr;
    Form9* form9_ = nullptr;
    std::unique_ptr<QLockFile> instanceLock_;
    bool unloaded_ = false;
};

} // namespace marlith
