// The Style window: every field of the style in force, edited with a preview
// on the real diagram; its File menu saves, deletes, imports and restores.
// Ok keeps the edits in the saved copy of the style; Cancel leaves it alone.
#pragma once

#include "chooser/chooser_rules.h"

#include <QDialog>
#include <QImage>
#include <QMessageBox>
#include <QPixmap>
#include <QPointer>
#include <array>
#include <functional>
#include <optional>
#include <utility>

class QAbstractItemView;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QTimer;

namespace marlith {

struct AppState;
struct StyleForm;
class Diagram;
class ToolButton;

class StyleWindow : public QDialog {
    Q_OBJECT
  public:
    // `diagram` is the main window's picture, measured for the size bars.
    StyleWindow(AppState& state, const Diagram& diagram, QWidget* parent);

    // The style list of the main window, less its first entry.
    void setStyleNames(const QStringList& names);

    void styleToControls();
    void controlsToStyle();
    void preview();
    void keepStyle();
    // Loads the stored style of the list's entry `index`, when the user chose
    // it in the list's pop-up; any other activation of the box is ignored.
    void chooseStyle(int index);
    void togglePadlock();
    void autoSizePicture();
    void autoSizeAndPreview();
    void switchGrid(bool on);
    void loadPiecesFile();
    void loadBorderFile();
    void resizePictureWidth(int value);
    void resizePictureHeight(int value);
    void updateFarEdgeEntries();
    void saveStyle();
    void deleteStyle();
    void chooseStyleFile();
    void restoreDefaults();

    QString statusText() const;

    // Runs the program's file chooser for a purpose; true and the path after Ok.
    std::function<std::optional<QString>(ChooserMode mode)> chooseFile;
    // The colour chooser: the colour picked, or -1 (replaced by tests).
    std::function<int32_t(int32_t color, QWidget* focusAfter)> pickColor;
    // A message titled "Warning" and the button pressed (replaced by tests).
    std::function<QMessageBox::StandardButton(const QString& text,
                                              QMessageBox::StandardButtons buttons)>
        ask;

  Q_SIGNALS:
    // The diagram is to be drawn again from the style in force.
    void redrawRequested();
    // The style of this name is to be read from the settings file and shown.
    void styleChosen(const QString& name);
    void styleAdded(const QString& name);
    void styleRemoved(const QString& name);
    // The sheet of the pieces goes back to the built-in one.
    void sheetReset();
    // The picture takes this size at once, in twips.
    void pictureResized(int widthTwips, int heightTwips);

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void createMenu();
    void watchStyleList();
    // The chooser names the file of the pieces' or the border's box, which reads it.
    void browseFile(QLineEdit* edit);
    // The controls, group by group as the window shows them.
    void createControls();
    QHBoxLayout* createNameRow();
    QGroupBox* createPiecesGroup();
    void addFontRows(QWidget* pieces, QGridLayout* grid, int& row);
    QHBoxLayout* createButtonRow();
    void addBoardRows(QGridLayout* grid, int& row);
    QGridLayout* createColourBox(QWidget* border);
    void addPictureRow(QGridLayout* grid, int& row);
    void addGridRows(QGridLayout* grid, int& row);
    QGridLayout* createFontStyles(QWidget* border);
    QHBoxLayout* createAlignGroups(QWidget* border);
    // The label of a control shows a border while the control has the focus.
    void watchFocus(QWidget* control, QLabel* shownBy);
    // Enter in the box previews; with `sizesPicture` typing in it lets an
    // open padlock size the picture anew.
    void previewOnEnter(QLineEdit* edit, bool sizesPicture);
    // A caption, then two boxes with "X" between them over the other columns.
    void addPairRow(QGridLayout* grid, int& row, QLabel* caption, QWidget* first,
                    const char* timesName, QWidget* second);
    StyleForm formFromControls() const;
    // The text boxes and the fields of the form they show.
    std::array<std::pair<QLineEdit*, QString StyleForm::*>, 18> textBoxes() const;
    void setSwatch(QPushButton* swatch, int32_t color);
    int32_t swatchColor(const QPushButton* swatch) const;
    void pick(QPushButton* swatch);
    void setPictureSizeColor(const QColor& color);
    bool loadPicture(const QString& file, QImage& picture) const;
    void setStatus(const QString& text);
    void warnAbout(const QString& text);

    AppState& state_;
    const Diagram& diagram_;
    // Measured, never shown: the sheet gives the square size, the border
    // picture the place of the board.
    QImage piecesPicture_;
    QImage borderPicture_;
    // The names the two pictures were last read under.
    QString piecesPictureFile_;
    QString borderPictureFile_;
    // The padlock open (the picture sized by the draw) and closed.
    std::array<QPixmap, 2> padlockFaces_;

    QComboBox* styleNameBox_ = nullptr;
    // The pop-up list of the name box, whose choices alone load a style.
    QPointer<QAbstractItemView> styleList_;
    QLineEdit* piecesFileEdit_ = nullptr;
    QComboBox* piecesFontBox_ = nullptr;
    QLineEdit* squareSizeEdit_ = nullptr;
    QPushButton* lightColorSwatch_ = nullptr;
    QPushButton* darkColorSwatch_ = nullptr;
    QCheckBox* darkHatchCheck_ = nullptr;
    QLineEdit* borderFileEdit_ = nullptr;
    QLineEdit* piecesListEdit_ = nullptr;
    QLineEdit* startPositionEdit_ = nullptr;
    QLineEdit* englishNotationEdit_ = nullptr;
    QLineEdit* popeyeDictionaryEdit_ = nullptr;
    QLineEdit* cellOverlapVerticalEdit_ = nullptr;
    QLineEdit* cellOverlapHorizontalEdit_ = nullptr;
    QLineEdit* squareSpaceVerticalEdit_ = nullptr;
    QLineEdit* squareSpaceHorizontalEdit_ = nullptr;
    QCheckBox* copyCounterCheck_ = nullptr;
    QLineEdit* boardRowsEdit_ = nullptr;
    QLineEdit* boardColumnsEdit_ = nullptr;
    QLineEdit* boardOffsetYEdit_ = nullptr;
    QLineEdit* boardOffsetXEdit_ = nullptr;
    QLineEdit* frameWidthEdit_ = nullptr;
    QPushButton* frameColorSwatch_ = nullptr;
    QPushButton* backColorSwatch_ = nullptr;
    QScrollBar* pictureHeightScrollBar_ = nullptr;
    QScrollBar* pictureWidthScrollBar_ = nullptr;
    QPushButton* autoSizeButton_ = nullptr;
    ToolButton* padlockButton_ = nullptr;
    QLabel* pictureSizeLabel_ = nullptr;
    QLineEdit* pictureHeightEdit_ = nullptr;
    QLineEdit* pictureWidthEdit_ = nullptr;
    QCheckBox* showGridCheck_ = nullptr;
    QComboBox* fontNameBox_ = nullptr;
    QComboBox* fontSizeBox_ = nullptr;
    QComboBox* gridOffsetYBox_ = nullptr;
    QComboBox* gridOffsetXBox_ = nullptr;
    std::array<QCheckBox*, 5> fontStyleChecks_{};
    QPushButton* fontColorSwatch_ = nullptr;
    std::array<QRadioButton*, 3> verticalAlignOptions_{};
    std::array<QRadioButton*, 3> horizontalAlignOptions_{};
    QLabel* statusLabel_ = nullptr;
    QTimer* gridOffsetTimer_ = nullptr;

    // The picture's width and height when the controls were last loaded: the
    // middle of the size bars. 0 while the bars are being set.
    int baseWidth_ = 0;
    int baseHeight_ = 0;
    // What the grid switch puts back when the grid comes on again.
    int32_t savedBackColor_ = 0;
    int32_t savedFontColor_ = 16777215;
    QString savedBoardOffsetY_ = QStringLiteral("15");
    QString savedBoardOffsetX_ = QStringLiteral("15");
    QString savedGridOffsetY_ = QStringLiteral("0");
    QString savedGridOffsetX_ = QStringLiteral("0");
    // The far edge of the picture, offered by the grid offset boxes.
    int pendingFarEdgeY_ = 0;
    int pendingFarEdgeX_ = 0;
    // While set, a preview does nothing: the controls are being loaded.
    bool previewBlocked_ = false;
    // Set from a choice in the pop-up of the name box until the activation
    // it leads to has run: the box also activates an entry when a typed name
    // matches one, on Enter, focus loss or a menu opening.
    bool listChoicePending_ = false;
    QString styleFilePath_;
};

} // namespace marlith
