// The main window, with the position text, the tool strips, the style
// list, the book panel, the diagram and the menus.
#pragma once

#include "books/scan_job.h"
#include "chooser/chooser_rules.h"
#include "core/app_state.h"
#include "core/settings.h"
#include "drawing/diagram.h"
#include "editing/board_edit.h"
#include "editing/board_effects.h"
#include "editing/position_undo.h"
#include "output/image_output.h"

#include <QMainWindow>
#include <QPixmap>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QAction;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QLockFile;
class QMenu;
class QTimer;

namespace marlith {

class BookPanel;
class DiagramView;
class ViewWindow;
class PopeyeWindow;
class CraftyWindow;
class HelpWindow;
class ToolButton;
class FileChooser;
class StyleWindow;
class HistoryWindow;
class SearchWindow;
class AddToBookWindow;
class GraphicWindow;
class ExportWindow;

class MainWindow : public QMainWindow {
    Q_OBJECT
  public:
    explicit MainWindow(AppState& state, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The start sequence; `arguments` is the command line without the program.
    void start(const QStringList& arguments);
    // The stop sequence; closing the window runs both.
    void closeChildWindows();
    void shutDown();

    void readSettings();
    void writeSettings();
    void addRecent(const QString& path);
    void drawBoard();
    void buildBoard();
    void commitBoardEdit();

    void newPosition();
    void setStartPosition();
    void refreshPosition();
    void exitProgram();
    void showAbout();
    void showHelp();
    void editStyle();
    void chooseStyle();
    void showViewWindow();

    // Opens the book named by bookFile, closing any open book first. The scan
    // goes on after the return; bookScanRunning() tells when it is over.
    void loadBook();
    bool bookScanRunning() const { return scanJob_ != nullptr; }
    void openBook();
    void closeBook();
    void openRecentBook(int index);
    // The position box receives a position of the book, its rows completed.
    void showPosition(const QString& board);
    // The name put into the style list as if typed there with Enter.
    void chooseStyleByName(const QString& name);
    BookPanel* bookPanel() const { return bookPanel_; }

    // Reverse shows the board turned half round; the position stays.
    void toggleReversed();
    void copyHtml();
    // The diagram on the default printer, or without one into a new
    // Marlith.pdf in the documents folder.
    // The diagram as it is now, to be drawn at any size.
    DiagramPicture diagramPicture() const;
    void paintDiagram(QPainter& painter, bool transparent) const;
    void printDiagram();

    void saveImage();
    void saveImageAs();
    // Asks for the format and size, then where, and writes the diagram so.
    void exportDiagram();
    void copyImage();
    void copyPosition();
    void pastePosition();

    void pressOnBoard(const BoardPress& press);
    void dragOnBoard(const BoardPress& press, double x, double y);
    void releaseOnBoard(const BoardPress& press, int button, double x, double y);

    // The caret behind the last character of the position box, and the position box with the focus.
    void focusPositionAtEnd();
    void moveCaretToEnd();
    // The View window, created hidden when the palette is first drawn.
    ViewWindow* viewWindow();
    void drawPalette();
    DiagramView* diagramView() const { return diagramView_; }

    // The engines: the Popeye and Crafty windows, created hidden at first use.
    void openPopeye();
    void openCrafty();
    PopeyeWindow* popeyeWindow();
    // The tools of the strokes over the diagram, created at first use.
    GraphicWindow* graphicWindow();
    void showGraphicWindow();
    // Appends the History rows to the open book as a new game.
    void showAddToBookWindow();
    AddToBookWindow* addToBookWindow();
    // Narrows the open book through the Search Criteria window.
    void searchBook();
    SearchWindow* searchWindow();
    // The History window, created at first use and hidden between uses.
    HistoryWindow* historyWindow();
    void showHistory();
    // Rec Mode: every mouse edit of the board copies the position.
    void switchRecMode();
    // Back to the row before the last one of the history.
    void undoRec();
    // Takes back the last change of the position, or brings it again.
    void undoChange();
    void redoChange();
    // The Style window, created at first use and hidden between uses.
    StyleWindow* styleWindow();
    CraftyWindow* craftyWindow();

    // The windows that the main window closes when it goes, in this order;
    // all but the file chooser also follow it when it is minimised.
    enum class ChildWindow { FileChooser, History, View, Graphic, Popeye, Crafty, Count };
    void setChildWindow(ChildWindow role, QWidget* window);

    QAction* action(const QString& name) const;
    Diagram& diagram() { return diagram_; }
    AppState& state() { return state_; }

    // How a further instance is started (replaced by tests).
    std::function<void(const QStringList&)> startInstance;
    // Shows the "Warning" message box (replaced by tests).
    std::function<void(const QString&)> warn;
    // Wraps the scan of a book that is opened (set by tests, to hold a scan
    // halfway).
    std::function<ScanJob::Scan(ScanJob::Scan)> holdBookScan;
    // Tells where something went (replaced by tests).
    std::function<void(const QString&)> inform;
    // Runs the file chooser modally (replaced by tests, which drive it).
    std::function<void(FileChooser&)> runChooser;
    // Runs the Style window modally (replaced by tests, which drive it).
    std::function<void(StyleWindow&)> runStyleWindow;
    // Runs the Search Criteria window modally (replaced by tests).
    std::function<void(SearchWindow&)> runSearchWindow;
    // Runs the Add to Book window modally (replaced by tests).
    std::function<void(AddToBookWindow&)> runAddToBookWindow;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // The running count while the book is scanned; the book on show at the end.
    void pollBookScan();
    // Escape: the scan ends where it stands, keeping what was read.
    void stopBookScan();
    void finishBookScan();
    void endBookScan();
    void createMenus();
    void createControls();
    void placeControls();
    bool handlePositionKey(const QString& typed, int key);
    void handlePositionKeyDown(int key);
    bool handleStyleKey(int key);
    // Enter in the style list: the style of that name, "CUSTOM" the Style window.
    void chooseTypedStyle();
    // Escape in the style list: the name of the style in use again.
    void restoreStyleText();
    // End in the position box: the text up to its last piece.
    void cutAfterLastPiece();
    // "/" in the position box: the row typed so far filled with empty squares.
    void completeRow();
    void takeChildWindowsAlong();
    void applyEffect(BoardEffect effect);
    // A stroke with Shift: the rubber band while dragging, the stroke itself
    // drawn into the picture at the release.
    void followStroke(const BoardPress& press, double x, double y);
    void finishStroke(const BoardPress& press, int button, double x, double y);
    // What the Style window asks of the main window.
    void redrawStyle();
    void resizePicture(int widthTwips, int heightTwips);
    void runToolCommand(const std::function<void()>& command, bool keepsFocus);
    void showRecentBooks();
    // Add to Book follows whether a .FEN or .PGN book is open.
    void updateAddToBook();
    void showStyleName();
    bool menuShortcutWins(QKeyEvent* key, bool boxHasSelection) const;
    // A change of the position that Undo can take back.
    void setPositionText(const QString& text);
    // Typed text becomes a step at Enter, at a pause or before another change.
    void flushTyping();
    void showUndoneText(const QString& text);
    void updateUndoItems();
    // The position, the window's place and the Popeye fields of the last session.
    void restoreSession();
    // Shows the file chooser for a purpose: the path chosen with Ok, or nothing.
    std::optional<QString> showChooser(ChooserMode mode, const QString& suggestedName = {});
    // Looks for the engines and Py.dat at start; the clean-up at the end.
    void detectEngines();
    void cleanUpEngines();

    AppState& state_;
    Diagram diagram_;
    QLabel* pieceCounterLabel_ = nullptr;
    QLineEdit* positionEdit_ = nullptr;
    QComboBox* styleBox_ = nullptr;
    BookPanel* bookPanel_ = nullptr;
    QWidget* firstToolStrip_ = nullptr;
    QWidget* secondToolStrip_ = nullptr;
    DiagramView* diagramView_ = nullptr;
    std::array<ToolButton*, 9> firstStripButtons_{};
    std::array<ToolButton*, 9> secondStripButtons_{};
    ToolButton* recModeButton_ = nullptr;
    std::array<QAction*, 4> recentBookActions_{};
    std::map<QString, QAction*> actions_;
    std::array<QWidget*, static_cast<size_t>(ChildWindow::Count)> childWindows_{};
    std::vector<QWidget*> hiddenChildWindows_;
    HelpWindow* helpWindow_ = nullptr;
    ViewWindow* viewWindow_ = nullptr;
    // Created at first use, then hidden between uses so that it remembers.
    FileChooser* fileChooser_ = nullptr;
    PopeyeWindow* popeyeWindow_ = nullptr;
    CraftyWindow* craftyWindow_ = nullptr;
    StyleWindow* styleWindow_ = nullptr;
    ExportWindow* exportWindow_ = nullptr;
    HistoryWindow* historyWindow_ = nullptr;
    SearchWindow* searchWindow_ = nullptr;
    AddToBookWindow* addToBookWindow_ = nullptr;
    GraphicWindow* graphicWindow_ = nullptr;
    // A search has narrowed the open book.
    bool bookNarrowed_ = false;
    std::array<QPixmap, 2> recModeFaces_;
    std::unique_ptr<QLockFile> instanceLock_;
    std::unique_ptr<QLockFile> seedLock_;
    bool unloaded_ = false;
    // The scan of the book being opened, and the timer that shows its count.
    std::unique_ptr<ScanJob> scanJob_;
    QTimer* scanTimer_ = nullptr;
    PositionUndo positionUndo_;
    KeptSession keptSession_;
    // Runs while typed text waits to become a step of its own.
    QTimer* typingPause_ = nullptr;
};

} // namespace marlith
