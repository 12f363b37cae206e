#include "gui/tool_faces.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPolygon>
#include <QtMath>
#include <functional>

namespace marlith {

namespace {

const QColor kFace(192, 192, 192);
const QColor kShadow(128, 128, 128);
const QColor kDark(64, 64, 64);

// Paints a face in its logical pixels on an image of any pixel ratio. At 1x it
// paints as a plain aliased painter does: a stroke covers the pixels right of
// and below its line, a fill the pixels inside its rectangle. Above 1x it
// smooths curves and slants, and strokes run through the middle of those same
// pixels, so that lines and fills meet as they do at 1x.
class FacePainter : public QPainter {
  public:
    explicit FacePainter(QImage& image) : QPainter(&image) {
        if (image.devicePixelRatio() > 1) {
            setRenderHint(QPainter::Antialiasing);
            strokeShift_ = 0.5;
            translate(strokeShift_, strokeShift_);
        }
    }
    // Fills whole logical pixels, not shifted with the strokes.
    void fillPixels(qreal x, qreal y, qreal width, qreal height, const QColor& color) {
        fillRect(QRectF(x - strokeShift_, y - strokeShift_, width, height), color);
    }

  private:
    qreal strokeShift_ = 0;
};

using Glyph = std::function<void(FacePainter&)>;

// An image of width by height logical pixels at the pixel ratio; a ratio that
// is not whole rounds the pixels up.
QImage canvas(int width, int height, qreal ratio, const QColor& background) {
    const auto pixels = [ratio](int length) { return qCeil(length * ratio - 1e-9); };
    QImage image(pixels(width), pixels(height), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(background);
    return image;
}

// A button face: a raised (or sunken) bevel round a glyph drawn in a 19 by 19
// frame; a pressed face shows the glyph one pixel down and right.
QPixmap face(int width, int height, qreal ratio, bool pressed, const Glyph& glyph) {
    QImage image = canvas(width, height, ratio, kFace);
    FacePainter p(image);
    const QColor light = pressed ? kShadow : Qt::white;
    const QColor dark = pressed ? kDark : kShadow;
    p.fillPixels(0, 0, width - 1, 1, light);
    p.fillPixels(0, 0, 1, height - 1, light);
    // Pixels rounded up at a ratio that is not whole take the dark edges on.
    const qreal right = image.deviceIndependentSize().width();
    const qreal bottom = image.deviceIndependentSize().height();
    p.fillPixels(0, height - 1, right, bottom - height + 1, dark);
    p.fillPixels(width - 1, 0, right - width + 1, bottom, dark);
    if (pressed) p.translate(1, 1);
    p.setPen(Qt::black);
    p.setBrush(Qt::NoBrush);
    glyph(p);
    p.end();
    return QPixmap::fromImage(image);
}

void pair(std::array<QPixmap, 18>& faces, int i, int width, int height, qreal ratio,
          const Glyph& glyph) {
    faces[i] = face(width, height, ratio, false, glyph);
    faces[i + 9] = face(width, height, ratio, true, glyph);
}

void arrow(QPainter& p, const QPolygon& head, QLine shaft) {
    p.drawLine(shaft);
    p.setBrush(Qt::black);
    p.drawPolygon(head);
    p.setBrush(Qt::NoBrush);
}

void page(QPainter& p, int x, int y) {
    p.setBrush(Qt::white);
    p.drawPolygon(QPolygon({QPoint(x, y), QPoint(x + 7, y), QPoint(x + 10, y + 3),
                            QPoint(x + 10, y + 12), QPoint(x, y + 12)}));
    p.setBrush(Qt::NoBrush);
}

} // namespace

qreal screenPixelRatio() {
    return qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
}

std::array<QPixmap, 18> firstStripFaces(qreal ratio) {
    std::array<QPixmap, 18> f;
    pair(f, 0, 19, 19, ratio, [](FacePainter& p) { // save: a disk
        p.fillPixels(4, 3, 11, 13, QColor(0, 0, 128));
        p.fillPixels(6, 3, 7, 5, Qt::white);
        p.fillPixels(6, 11, 7, 5, kFace);
        p.fillPixels(10, 12, 2, 3, Qt::black);
    });
    pair(f, 1, 19, 19, ratio, [](FacePainter& p) { // graphic: a pencil over a stroke
        p.setPen(QColor(0, 0, 160));
        p.drawLine(3, 15, 14, 4);
        p.drawLine(4, 15, 15, 4);
        p.setPen(Qt::black);
        p.drawLine(3, 16, 5, 16);
        p.setPen(QColor(200, 0, 0));
        p.drawEllipse(9, 10, 6, 6);
    });
    pair(f, 2, 19, 19, ratio, [](FacePainter& p) { // history: a list of rows
        p.fillPixels(3, 3, 13, 13, Qt::white);
        p.drawRect(3, 3, 12, 12);
        for (int y = 6; y <= 12; y += 3)
            p.drawLine(5, y, 13, y);
    });
    pair(f, 3, 19, 19, ratio, [](FacePainter& p) { // image: a small diagram
        p.drawRect(3, 3, 12, 12);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
                if ((x + y) % 2) p.fillPixels(4 + x * 3, 4 + y * 3, 3, 3, kShadow);
    });
    pair(f, 4, 19, 19, ratio, [](FacePainter& p) { // html: angle brackets
        p.setPen(QColor(0, 100, 0));
        p.drawPolyline(QPolygon({QPoint(7, 4), QPoint(3, 9), QPoint(7, 14)}));
        p.drawPolyline(QPolygon({QPoint(11, 4), QPoint(15, 9), QPoint(11, 14)}));
        p.drawLine(10, 4, 8, 14);
    });
    pair(f, 5, 19, 19, ratio, [](FacePainter& p) { // copy: two pages
        page(p, 2, 2);
        page(p, 6, 5);
    });
    pair(f, 6, 19, 19, ratio, [](FacePainter& p) { // paste: a clipboard with a page
        p.fillPixels(3, 3, 11, 13, QColor(160, 110, 40));
        p.fillPixels(6, 2, 5, 3, Qt::black);
        page(p, 7, 6);
    });
    pair(f, 7, 19, 19, ratio, [](FacePainter& p) { // print: a printer
        p.fillPixels(5, 2, 9, 6, Qt::white);
        p.drawRect(5, 2, 8, 6);
        p.fillPixels(2, 8, 15, 6, kShadow);
        p.drawRect(2, 8, 14, 6);
        p.fillPixels(5, 12, 9, 5, Qt::white);
        p.drawRect(5, 12, 8, 4);
    });
    pair(f, 8, 19, 19, ratio, [](FacePainter& p) { // engine: a cog
        p.setBrush(kDark);
        p.drawEllipse(4, 4, 10, 10);
        p.fillPixels(8, 2, 3, 15, kDark);
        p.fillPixels(2, 8, 15, 3, kDark);
        p.setBrush(kFace);
        p.drawEllipse(7, 7, 4, 4);
    });
    return f;
}

std::array<QPixmap, 18> secondStripFaces(qreal ratio) {
    std::array<QPixmap, 18> f;
    pair(f, 0, 19, 19, ratio, [](FacePainter& p) { page(p, 4, 3); }); // new: an empty page
    pair(f, 1, 19, 19, ratio, [](FacePainter& p) {                    // start: a pawn
        p.setBrush(Qt::white);
        p.drawEllipse(7, 3, 4, 4);
        p.drawPolygon(QPolygon({QPoint(7, 8), QPoint(11, 8), QPoint(13, 14), QPoint(5, 14)}));
        p.drawRect(4, 14, 10, 2);
    });
    pair(f, 2, 19, 9, ratio, [](FacePainter& p) { // right
        arrow(p, QPolygon({QPoint(11, 1), QPoint(15, 4), QPoint(11, 7)}), QLine(3, 4, 12, 4));
    });
    pair(f, 3, 19, 9, ratio, [](FacePainter& p) { // left
        arrow(p, QPolygon({QPoint(7, 1), QPoint(3, 4), QPoint(7, 7)}), QLine(6, 4, 15, 4));
    });
    pair(f, 4, 9, 19, ratio, [](FacePainter& p) { // up
        arrow(p, QPolygon({QPoint(1, 7), QPoint(4, 3), QPoint(7, 7)}), QLine(4, 6, 4, 15));
    });
    pair(f, 5, 9, 19, ratio, [](FacePainter& p) { // down
        arrow(p, QPolygon({QPoint(1, 11), QPoint(4, 15), QPoint(7, 11)}), QLine(4, 3, 4, 12));
    });
    pair(f, 6, 19, 19, ratio, [](FacePainter& p) { // rotate: a quarter turn
        p.drawArc(4, 4, 11, 11, 90 * 16, 270 * 16);
        arrow(p, QPolygon({QPoint(9, 1), QPoint(12, 4), QPoint(9, 7)}), QLine(9, 4, 10, 4));
    });
    pair(f, 7, 19, 19, ratio, [](FacePainter& p) { // horizontal mirror
        p.setPen(QPen(kShadow, 1, Qt::DotLine));
        p.drawLine(9, 2, 9, 16);
        p.setPen(Qt::black);
        arrow(p, QPolygon({QPoint(6, 6), QPoint(2, 9), QPoint(6, 12)}), QLine(3, 9, 7, 9));
        arrow(p, QPolygon({QPoint(12, 6), QPoint(16, 9), QPoint(12, 12)}), QLine(11, 9, 15, 9));
    });
    pair(f, 8, 19, 19, ratio, [](FacePainter& p) { // diagonal mirror
        p.setPen(QPen(kShadow, 1, Qt::DotLine));
        p.drawLine(2, 16, 16, 2);
        p.setPen(Qt::black);
        p.setBrush(Qt::black);
        p.drawPolygon(QPolygon({QPoint(3, 3), QPoint(8, 3), QPoint(3, 8)}));
        p.drawPolygon(QPolygon({QPoint(15, 15), QPoint(10, 15), QPoint(15, 10)}));
    });
    return f;
}

std::array<QPixmap, 2> recModeFaces(qreal ratio) {
    std::array<QPixmap, 2> f;
    f[0] = face(19, 19, ratio, false, [](FacePainter& p) {
        p.setPen(kDark);
        p.setBrush(QColor(110, 0, 0));
        p.drawEllipse(4, 4, 10, 10);
    });
    f[1] = face(19, 19, ratio, true, [](FacePainter& p) {
        p.setPen(kDark);
        p.setBrush(QColor(255, 0, 0));
        p.drawEllipse(4, 4, 10, 10);
    });
    return f;
}

std::array<QPixmap, 8> stepButtonFaces(qreal ratio) {
    std::array<QPixmap, 8> f;
    // Triangles pointing the way of the step; a bar stands at the far end.
    const std::array<Glyph, 4> glyphs = {
        [](FacePainter& p) { // first
            p.fillPixels(3, 4, 2, 8, Qt::black);
            p.setBrush(Qt::black);
            p.drawPolygon(QPolygon({QPoint(11, 4), QPoint(6, 8), QPoint(11, 12)}));
        },
        [](FacePainter& p) { // back
            p.setBrush(Qt::black);
            p.drawPolygon(QPolygon({QPoint(10, 4), QPoint(5, 8), QPoint(10, 12)}));
        },
        [](FacePainter& p) { // forward
            p.setBrush(Qt::black);
            p.drawPolygon(QPolygon({QPoint(5, 4), QPoint(10, 8), QPoint(5, 12)}));
        },
        [](FacePainter& p) { // last
            p.setBrush(Qt::black);
            p.drawPolygon(QPolygon({QPoint(4, 4), QPoint(9, 8), QPoint(4, 12)}));
            p.fillPixels(11, 4, 2, 8, Qt::black);
        },
    };
    for (int i = 0; i < 4; ++i) {
        f[i] = face(16, 16, ratio, false, glyphs[i]);
        f[i + 4] = face(16, 16, ratio, true, glyphs[i]);
    }
    return f;
}

std::array<QPixmap, 2> browseFaces(qreal ratio) {
    const Glyph folderAndGlass = [](FacePainter& p) {
        p.setBrush(QColor(255, 224, 128));
        p.drawPolygon(QPolygon({QPoint(2, 5), QPoint(6, 5), QPoint(7, 6), QPoint(13, 6),
                                QPoint(13, 14), QPoint(2, 14)}));
        p.setBrush(Qt::white);
        p.drawEllipse(QRect(8, 7, 6, 6));
        p.setPen(QPen(Qt::black, 2));
        p.drawLine(14, 13, 16, 15);
    };
    return {face(19, 19, ratio, false, folderAndGlass), face(19, 19, ratio, true, folderAndGlass)};
}

std::array<QPixmap, 2> padlockFaces(qreal ratio) {
    const auto padlock = [](bool closed) {
        return [closed](FacePainter& p) {
            p.drawArc(QRect(closed ? 6 : 9, 3, 7, 9), 0, 180 * 16);
            p.drawLine(closed ? 6 : 9, 7, closed ? 6 : 9, closed ? 9 : 7);
            p.drawLine(closed ? 13 : 16, 7, closed ? 13 : 16, 9);
            p.setBrush(QColor(255, 200, 0));
            p.drawRect(QRect(4, 9, 10, 7));
            p.drawPoint(9, 12);
        };
    };
    return {face(19, 19, ratio, false, padlock(false)), face(19, 19, ratio, true, padlock(true))};
}

QPixmap programIcon(qreal ratio) {
    QImage image = canvas(32, 32, ratio, Qt::white);
    FacePainter p(image);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            p.fillPixels(x * 8, y * 8, 8, 8, (x + y) % 2 ? QColor(192, 192, 192) : Qt::white);
    p.setPen(Qt::black);
    p.setBrush(Qt::black);
    p.drawEllipse(12, 6, 8, 8);
    p.drawPolygon(QPolygon({QPoint(13, 14), QPoint(19, 14), QPoint(23, 25), QPoint(9, 25)}));
    p.drawRect(7, 25, 18, 3);
    p.setBrush(Qt::NoBrush);
    p.drawRect(0, 0, 31, 31);
    p.end();
    return QPixmap::fromImage(image);
}

} // namespace marlith
