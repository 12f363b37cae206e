// Styles brought in from a style file: its blocks, the check of each, the
// copy of the bitmaps it names into the program folder, and the store of
// the block in the settings file.
#pragma once

#include "styles/style.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace marlith {

// The blocks of a style file that end with "EndStyle", in file order, the
// file names kept as written. A value that doesn't fit its field ends the
// reading; the blocks before it stay.
struct StyleFileBlocks {
    QList<Style> blocks;
    bool stoppedAtFault = false;
};
StyleFileBlocks readStyleFile(const QByteArray& bytes);

// The name under which a file named in a style file is looked for beside it
// and stored in the program folder: the text behind its last "/" or "\".
// Empty for a name that has none ("", "..", "a/").
QString importedFileName(const QString& value);

enum class ImportButtons { Ok, OkCancel, YesNoCancel };
enum class ImportAnswer { Yes, No, Ok, Cancel };

struct ImportHooks {
    // Shows a message titled "Warning" and gives the button pressed.
    std::function<ImportAnswer(const QString& text, ImportButtons buttons)> ask;
    // Called as each block is taken up, with its style name.
    std::function<void(const QString& styleName)> blockStarted;
    // Copies a file over another; stands in for a failing disk in tests.
    std::function<bool(const QString& from, const QString& to)> copy;
};

// Imports every usable block of the style file. `knownNames` is the style
// list (without "CUSTOM"); a style whose name is in it is replaced only after
// the user agrees, a new one is appended to it. The bitmaps of a block are
// taken only from the style file's own folder and go into the program folder
// under their bare names; a file there that another style uses, or that no
// style uses, is never overwritten: the copy then gets a free name such as
// "pieces-2.bmp", which the stored block names; the program's own files
// (settings, engines, temporary files) are never taken. A bitmap must be a
// picture. Returns the names added; `complete` tells whether every block was
// read and stored (false after a value that didn't fit, a failed copy or
// write, or a stop).
QStringList importStyles(const QString& styleFilePath, const QString& programFolder,
                         QStringList& knownNames, const ImportHooks& hooks,
                         bool* complete = nullptr);

// The replace question of a style already in the list.
QString replaceStyleQuestion(const QString& styleName);

} // namespace marlith
