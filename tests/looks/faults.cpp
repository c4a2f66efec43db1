// SPDX-License-Identifier: MIT
#include "looks/faults.h"

#include "connection/elided_label.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScreen>
#include <QSplitter>
#include <QStyleOption>
#include <QTabBar>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace {

QString nameOf(const QWidget& part)
{
    QString text = part.objectName();
    if (const auto* label = qobject_cast<const QLabel*>(&part))
        text += " \"" + label->text() + '"';
    if (const auto* button = qobject_cast<const QAbstractButton*>(&part))
        text += " \"" + button->text() + '"';
    return QString("%1 %2").arg(part.metaObject()->className(), text).simplified();
}

QString textOf(const QRect& rect)
{
    return QString("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

/// Whether it stands in what is scrolled, or is a dock behind another one's tab: there being out of
/// sight is no fault.
bool isMeantToBeOutOfSight(const QWidget& part)
{
    if (qobject_cast<const QDockWidget*>(&part) && part.visibleRegion().isEmpty())
        return true;
    const auto* above = qobject_cast<const QAbstractScrollArea*>(
        part.parentWidget() ? part.parentWidget()->parentWidget() : nullptr);
    return above && above->viewport() == part.parentWidget();
}

using Parts = QList<const QWidget*>;

/// All that is shown in `from`, each part behind the one that it stands in.
Parts partsOf(const QWidget& from, const QList<QWidget*>& besides)
{
    Parts parts;
    for (QObject* child : from.children()) {
        auto* part = qobject_cast<QWidget*>(child);
        if (!part || part->isWindow() || part->isHidden() || isMeantToBeOutOfSight(*part) ||
            besides.contains(part))
            continue;
        parts += part;
        parts += partsOf(*part, besides);
    }
    return parts;
}

QString withoutMnemonic(QString text)
{
    return text.remove('&');
}

QSize sizeOf(const QWidget& part, const QString& text)
{
    return part.fontMetrics().size(0, withoutMnemonic(text).trimmed());
}

int widthOf(const QWidget& part, const QString& text)
{
    return sizeOf(part, text).width();
}

// What a part has for its text, and what the text wants.

QSize roomIn(const QAbstractButton& button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    const QStyle& style = *button.style();
    QRect room = button.rect();
    if (qobject_cast<const QCheckBox*>(&button))
        room = style.subElementRect(QStyle::SE_CheckBoxContents, &option, &button);
    else if (qobject_cast<const QRadioButton*>(&button))
        room = style.subElementRect(QStyle::SE_RadioButtonContents, &option, &button);
    else if (qobject_cast<const QPushButton*>(&button))
        room = style.subElementRect(QStyle::SE_PushButtonContents, &option, &button);
    const int icon = button.icon().isNull() ? 0 : button.iconSize().width() + 4;
    return room.size() - QSize(icon, 0);
}

bool isCut(const QLabel& label)
{
    if (label.text().isEmpty() || dynamic_cast<const ElidedLabel*>(&label)) // cuts with a sign
        return false;
    const QRect room = label.contentsRect();
    const QSize wish = sizeOf(label, label.text());
    if (!label.wordWrap())
        return room.width() < wish.width() || room.height() < wish.height();
    int widest = 0;
    for (const QString& word : label.text().split(QRegularExpression("[\\s/]")))
        widest = std::max(widest, widthOf(label, word));
    return room.width() < widest || label.height() < label.heightForWidth(label.width());
}

bool isCut(const QAbstractButton& button)
{
    if (button.text().isEmpty() || button.inherits("QTabBar"))
        return false;
    const QSize room = roomIn(button);
    return room.width() < widthOf(button, button.text()) ||
           room.height() < button.fontMetrics().tightBoundingRect(button.text()).height();
}

bool isCut(const QComboBox& box)
{
    QStyleOptionComboBox option;
    option.initFrom(&box);
    option.editable = box.isEditable();
    const QRect room = box.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                   QStyle::SC_ComboBoxEditField, &box);
    return room.width() < widthOf(box, box.currentText()) ||
           room.height() < box.fontMetrics().ascent();
}

/// What a user types may be longer than its field.
bool isCut(const QLineEdit& edit)
{
    const bool isBox = qobject_cast<const QAbstractSpinBox*>(edit.parentWidget());
    const QString text = isBox ? edit.text() : edit.placeholderText();
    return edit.width() < widthOf(edit, text) || edit.height() < edit.fontMetrics().ascent();
}

QStringList cutHeads(const QHeaderView& header)
{
    QStringList cut;
    if (header.orientation() != Qt::Horizontal)
        return cut;
    const int margins = 2 * header.style()->pixelMetric(QStyle::PM_HeaderMargin);
    for (int i = 0; i < header.count(); ++i) {
        const QString text = header.model()->headerData(i, Qt::Horizontal).toString();
        const int room = header.sectionSize(i) - margins;
        if (!header.isSectionHidden(i) && room < widthOf(header, text))
            cut += QString("column head \"%1\": %2 px").arg(text).arg(room);
    }
    return cut;
}

QStringList cutTabs(const QTabBar& bar)
{
    QStringList cut;
    for (int i = 0; i < bar.count(); ++i)
        if (!bar.rect().contains(bar.tabRect(i)) ||
            bar.tabRect(i).width() < widthOf(bar, bar.tabText(i)))
            cut += QString("tab \"%1\"").arg(bar.tabText(i));
    return cut;
}

QStringList cutMenus(const QMenuBar& bar)
{
    QStringList cut;
    for (QAction* action : bar.actions())
        if (!bar.rect().contains(bar.actionGeometry(action)))
            cut += QString("menu \"%1\"").arg(action->text());
    return cut;
}

QStringList cutTextsIn(const QWidget& part)
{
    if (const auto* header = qobject_cast<const QHeaderView*>(&part))
        return cutHeads(*header);
    if (const auto* tabs = qobject_cast<const QTabBar*>(&part))
        return cutTabs(*tabs);
    if (const auto* menus = qobject_cast<const QMenuBar*>(&part))
        return cutMenus(*menus);
    const auto* label = qobject_cast<const QLabel*>(&part);
    const auto* button = qobject_cast<const QAbstractButton*>(&part);
    const auto* box = qobject_cast<const QComboBox*>(&part);
    const auto* edit = qobject_cast<const QLineEdit*>(&part);
    const bool isFault = (label && isCut(*label)) || (button && isCut(*button)) ||
                         (box && isCut(*box)) || (edit && isCut(*edit));
    return isFault ? QStringList(nameOf(part) + ": " + textOf(part.geometry())) : QStringList();
}

/// The toolkit lays these over their neighbours on purpose.
bool mayOverlap(const QWidget& part)
{
    return qobject_cast<const QSplitterHandle*>(&part) || part.inherits("QSizeGrip") ||
           part.testAttribute(Qt::WA_TransparentForMouseEvents);
}

bool overlap(const QWidget& one, const QWidget& other)
{
    const QLayout* const layout = one.parentWidget()->layout();
    return layout && layout->indexOf(const_cast<QWidget*>(&one)) >= 0 &&
           layout->indexOf(const_cast<QWidget*>(&other)) >= 0 &&
           one.geometry().intersects(other.geometry());
}

// Contrast.

double linear(int part)
{
    const double value = part / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) +
           0.0722 * linear(color.blue());
}

/// Of the letters with what is behind them, the colour that most of the pixels have. Soft edges
/// make letters look paler than their colour: what counts is the strongest pixel.
double contrastIn(const QImage& image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    if (counts.isEmpty())
        return 1;
    QRgb background = counts.begin().key();
    for (auto count = counts.begin(); count != counts.end(); ++count)
        if (count.value() > counts.value(background))
            background = count.key();
    double strongest = 1;
    for (auto count = counts.begin(); count != counts.end(); ++count)
        strongest = std::max(strongest, contrastOf(QColor(count.key()), QColor(background)));
    return strongest;
}

bool hasText(const QWidget& part)
{
    const auto* label = qobject_cast<const QLabel*>(&part);
    const auto* button = qobject_cast<const QAbstractButton*>(&part);
    return (label && !label->text().isEmpty()) || (button && !button->text().isEmpty()) ||
           part.objectName() == "dockTitle" || part.inherits("Graph");
}

/// The text itself: its frame might be of another colour, and a dock's title has buttons behind it.
QRect textRect(const QWidget& part)
{
    // Of a graph the numbers at the left are looked at.
    if (part.objectName() == "dockTitle" || part.inherits("Graph"))
        return QStyle::visualRect(part.layoutDirection(), part.rect(),
                                  QRect(0, 0, part.width() / 8, part.height()));
    const int edge = qobject_cast<const QLabel*>(&part) ? 0 : 4;
    return part.rect().adjusted(edge, edge, -edge, -edge);
}

QStringList misplacedParts(const Parts& parts)
{
    QStringList faults;
    for (const QWidget* part : parts) {
        if (mayOverlap(*part))
            continue;
        // Reversed splitters reckon one pixel too far.
        const QWidget& around = *part->parentWidget();
        if (!around.rect().adjusted(0, 0, 1, 0).contains(part->geometry()))
            faults += QString("%1: %2 sticks out of %3 (%4)")
                          .arg(nameOf(*part), textOf(part->geometry()), nameOf(around),
                               textOf(around.rect()));
        for (const QWidget* other : parts)
            if (other > part && other->parentWidget() == &around && !mayOverlap(*other) &&
                overlap(*part, *other))
                faults += nameOf(*part) + " lies on " + nameOf(*other);
    }
    return faults;
}

QStringList faintTexts(const QWidget& window, const QImage& image, const Parts& parts)
{
    const double scale = image.width() / static_cast<double>(window.width());
    QStringList faults;
    for (const QWidget* part : parts) {
        if (!hasText(*part) || !part->isEnabled())
            continue;
        const QRect text = textRect(*part);
        const QPointF place = QPointF(part->mapTo(&window, text.topLeft())) * scale;
        const QRect pixels = QRectF(place, QSizeF(text.size()) * scale).toAlignedRect();
        const double contrast = contrastIn(image.copy(pixels.intersected(image.rect())));
        if (contrast < leastContrast)
            faults += QString("%1: contrast %2").arg(nameOf(*part)).arg(contrast, 0, 'f', 1);
    }
    return faults;
}

QStringList sizeFaults(const QWidget& window)
{
    const QSize size = window.frameSize();
    if (size.boundedTo(window.screen()->availableSize()) == size)
        return {};
    return {QString("%1x%2 is larger than the screen").arg(size.width()).arg(size.height())};
}

} // namespace

double contrastOf(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QStringList faultsOf(const QWidget& window, const QImage& image, const QList<QWidget*>& besides)
{
    const Parts parts = partsOf(window, besides);
    QStringList faults =
        sizeFaults(window) + misplacedParts(parts) + faintTexts(window, image, parts);
    for (const QWidget* part : parts)
        faults += cutTextsIn(*part);
    return faults;
}
