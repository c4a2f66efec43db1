// SPDX-License-Identifier: MIT
#include "windows/picture.h"

#include "windows/saved_file.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QWidget>

namespace {

constexpr int resolution = 96;        ///< dots an inch, one of them a pixel of scale 1
constexpr double pointsAnInch = 72.0; ///< in which sizes of pages are

QByteArray pdfOf(QWidget& widget)
{
    QBuffer buffer;
    if (!buffer.open(QIODevice::WriteOnly))
        return {};
    QPdfWriter writer(&buffer);
    writer.setCreator(QCoreApplication::applicationName());
    writer.setResolution(resolution);
    writer.setPageSize(
        QPageSize(QSizeF(widget.size()) * pointsAnInch / resolution, QPageSize::Point));
    writer.setPageMargins({});
    QPainter painter(&writer);
    widget.render(&painter);
    painter.end();
    return buffer.data();
}

QByteArray pngOf(const QPixmap& pixels)
{
    QBuffer buffer;
    return buffer.open(QIODevice::WriteOnly) && pixels.save(&buffer, "PNG") ? buffer.data()
                                                                            : QByteArray();
}

} // namespace

Picture pictureOf(QWidget& widget)
{
    return {widget.grab(), pdfOf(widget)};
}

QString savePicture(const Picture& picture, const QString& file)
{
    const QString format = QFileInfo(file).suffix().toLower();
    if (format != "png" && format != "pdf")
        return QCoreApplication::translate(
                   "Picture",
                   "The picture cannot be saved as %1: let the name end in .png or .pdf.")
            .arg(file);
    const QByteArray bytes = format == "pdf" ? picture.pdf : pngOf(picture.pixels);
    if (bytes.isEmpty())
        return QCoreApplication::translate("Picture", "There is nothing in the picture to save.");
    return saveFile(file, bytes);
}
