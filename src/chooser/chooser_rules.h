// Rules of the file chooser that need no window: what each purpose offers,
// how a typed name becomes a path, and the drive, folder and file lists.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace marlith {

// What the file chooser is shown for.
enum class ChooserMode : int16_t { SaveImage, OpenBook, BorderBitmap, PieceSheet, StyleFile };

// What the chooser shows for one purpose.
struct ChooserEntry {
    QString caption;
    QStringList filters; // the entries of the filter box
    QString filter;      // the filter set
    QString name;        // the name proposed
};

// The entry for a purpose, given the filter of the last use. A suggested
// name stands for the proposed one and sets the filter of its extension when
// the purpose offers that filter. Nothing for any other mode: the window
// then stays as it was left.
std::optional<ChooserEntry> chooserEntryFor(ChooserMode mode, const QString& lastFilter,
                                            const QString& suggestedName = {});

// A name without "." takes the filter's extension: everything from the
// filter's first "." on. A filter without "." adds nothing.
QString addFilterExtension(const QString& name, const QString& filter);

// Save Image As: a name ending in one of the image extensions takes the
// extension of the image filter chosen, so that the file is written in the
// format the filter offers. Any other name, or any other filter, is kept.
QString nameForImageFilter(const QString& name, const QString& filter);

// A bare name goes into `folder`; a name holding "/" stands as it is.
QString completePath(const QString& name, const QString& folder);

// What Ok makes of the name box: nothing when it is empty, else the name
// with the extension rule and then the path completion applied.
std::optional<QString> chosenPath(const QString& name, const QString& filter,
                                  const QString& folder);

// The drive list: "/" first, then the other roots in the order given, each
// once; empty entries are dropped.
QStringList driveRoots(const QStringList& mountedRoots);

// The drive holding `path`: the longest root that contains it, or "/".
QString driveOf(const QString& path, const QStringList& drives);

// The name patterns of a filter: ";" separates several, "*.*" means every
// file, and an empty filter shows every file.
QStringList namePatterns(const QString& filter);

// The files of `folder` that match `filter`, by name without regard to case,
// sorted without regard to case. Hidden files are left out.
QStringList filesMatching(const QString& folder, const QString& filter);

// The folders inside `folder`, sorted without regard to case, hidden ones
// left out.
QStringList subfolders(const QString& folder);

// The folder `path` made absolute and clean, when it can be opened.
std::optional<QString> openableFolder(const QString& path);

// One row of the folder list.
struct FolderRow {
    QString path;      // absolute
    QString label;     // what the row shows
    int depth = 0;     // 0 for the root
    bool open = false; // the current folder and the ones above it
};

// The folder list for the current folder `path` (absolute and clean): the
// folders from the root down to it, open, then its `subfolders`.
std::vector<FolderRow> folderRows(const QString& path, const QStringList& subfolders);

} // namespace marlith
