// SPDX-License-Identifier: MIT
#include "windows/guide_window.h"

#include "dialogs/window_order.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextBrowser>
#include <QTextDocument>

namespace {

/// Pictures that are wider than the text would make the whole of it as wide.
class GuideText : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl& name) override
    {
        QVariant content = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource || content.isNull())
            return content;
        QImage picture = content.userType() == QMetaType::QByteArray
                             ? QImage::fromData(content.toByteArray())
                             : content.value<QImage>();
        if (picture.width() > fWidest)
            picture = picture.scaledToWidth(fWidest, Qt::SmoothTransformation);
        return picture;
    }

private:
    static constexpr int fWidest = 720; ///< px
};

} // namespace

QString showGuide(const QString& file, QWidget* window)
{
    if (!QFileInfo(file).isReadable())
        return QCoreApplication::translate(
                   "Guide", "The guide is not there: %1 is missing or cannot be read. Install the "
                            "program's documents, too.")
            .arg(file);
    auto* guide = window->findChild<QTextBrowser*>("guide");
    if (!guide) {
        guide = new GuideText(window);
        guide->setObjectName("guide");
        guide->setWindowFlag(Qt::Window);
        guide->setAttribute(Qt::WA_DeleteOnClose);
        guide->setWindowTitle(QCoreApplication::translate("Guide", "Guide"));
        guide->resize(820, 700);
        guide->setOpenExternalLinks(true);
        guide->setSource(QUrl::fromLocalFile(file), QTextDocument::MarkdownResource);
    }
    bringToFront(*guide);
    return {};
}
