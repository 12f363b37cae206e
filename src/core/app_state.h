// The state that the windows share: one instance, owned by main() (or by a
// test), handed to each window when it is created.
#pragma once

#include "books/book_walk.h"
#include "engines/popeye_fields.h"
#include "output/export_choices.h"
#include "position/fen.h"
#include "styles/style.h"

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>

namespace marlith {

inline std::array<uint32_t, 16> filledColors(uint32_t color) {
    std::array<uint32_t, 16> colors;
    colors.fill(color);
    return colors;
}

struct AppState {
    Style style;
    Style savedStyle;
    SquareVector squares{};
    QString programFolder; // ends in "/"; also the working directory
    // The shipped files (styles, sheets, py.dat), ending in "/"; empty when
    // none were found.
    QString shippedFolder;
    QString tempSeed; // "F" and six digits: the start of all temporary names
    QString imageFile = QStringLiteral("Marlith.bmp");
    QString bookFile;
    std::array<QString, 4> recentFile;
    QString recentEngine;
    QString pyDatDictionary;
    QString fullDictionary;
    // The engines found at start ("" when missing) and the lists that Py.dat
    // gives the Popeye window's boxes.
    QString popeyeProgram;
    QString craftyProgram;
    PopeyeLists popeyeLists;
    // The Popeye window's fields, kept for the run and never saved.
    PopeyeFields popeyeFields;
    // What Export Diagram was last asked for, kept in the settings file.
    ExportChoices exportChoices;
    // The extension of the current Crafty log, such as "007".
    QString logExtension;
    bool otherInstanceRunning = false;
    // Child windows only hide on close while the main window lives.
    bool mainWindowAlive = true;
    int16_t reversedBoard = 0;
    int16_t clickedSquare = -1;
    int16_t chosenPiece = -1;
    // The colour chooser's sixteen custom colours, kept for the run.
    std::array<uint32_t, 16> customColors = filledColors(0xFFFFFFFFu);
    // The open book: its work file, index and the record on show.
    OpenBook book;

    Board board() const { return Board{style.BorderHeight, style.BorderWidth}; }
};

} // namespace marlith
