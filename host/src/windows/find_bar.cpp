// SPDX-License-Identifier: MIT
#include "windows/find_bar.h"

#include "windows/match_marks.h"
#include "windows/table_text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace {

constexpr int longestText = 1000; ///< characters

} // namespace

FindBar::FindBar(QWidget* parent)
    : QToolBar(tr("Find"), parent), fEdit(new QLineEdit(this)), fCount(new QLabel(this))
{
    setObjectName("findBar");
    setMovable(false);
    fEdit->setPlaceholderText(tr("Find in the table"));
    fEdit->setAccessibleName(tr("Find in the table"));
    fEdit->setClearButtonEnabled(true);
    fEdit->setMaxLength(longestText);
    fEdit->installEventFilter(this);
    fCount->setObjectName("findCount");
    fCount->setMargin(6);
    addWidget(fEdit);
    addButton(QChar(0x25b2), tr("Previous match"), [this] { stepFromHere(false); });
    addButton(QChar(0x25bc), tr("Next match"), [this] { stepFromHere(true); });
    addWidget(fCount);
    addButton(QChar(0x00d7), tr("Close"), [this] { xClose(); });
    hide();
    connect(fEdit, &QLineEdit::textEdited, this, &FindBar::xOnEdited);
    connect(&fSearch, &ItemSearch::found, this, &FindBar::xOnFound);
    connect(&fSearch, &ItemSearch::counted, this, &FindBar::xShowCount);
}

void FindBar::addButton(const QString& mark, const QString& name,
                        const std::function<void()>& action)
{
    auto* button = new QToolButton(this);
    button->setText(mark);
    button->setToolTip(name);
    button->setAccessibleName(name);
    connect(button, &QToolButton::clicked, this, action);
    addWidget(button);
}

void FindBar::lookIn(QAbstractItemView* view)
{
    fView = view;
    delete fMarks;
    const QVector<int> columns = view ? shownColumns(*view) : QVector<int>();
    fSearch.look(view ? view->model() : nullptr, view ? view->rootIndex() : QModelIndex(), columns,
                 fEdit->text());
    if (view)
        fMarks = new MatchMarks(*view, columns,
                                [this](const QModelIndex& cell) { return fSearch.isMatch(cell); });
    fSearch.count();
}

/// The one it looks in already, if that is still to be seen.
QAbstractItemView* FindBar::viewIn(const QWidget& panel) const
{
    const bool stays = fView && panel.isAncestorOf(fView) && fView->isVisible();
    return stays ? fView.data() : tableIn(panel);
}

void FindBar::open(const QWidget& panel)
{
    lookIn(isAncestorOf(QApplication::focusWidget()) ? viewIn(panel) : tableIn(panel));
    show();
    fEdit->setFocus();
    fEdit->selectAll();
}

void FindBar::step(const QWidget& panel, bool isForward)
{
    if (isHidden())
        open(panel);
    else if (viewIn(panel) != fView)
        lookIn(viewIn(panel));
    stepFromHere(isForward);
}

void FindBar::stepFromHere(bool isForward)
{
    if (!fSearch.isCounting())
        lookIn(fView); // what is in the table may be another by now
    if (fView)
        fSearch.step(fView->currentIndex(), isForward);
}

void FindBar::follow(const QWidget* panel)
{
    QAbstractItemView* const view = panel ? viewIn(*panel) : nullptr;
    if (!isHidden() && view != fView)
        lookIn(view);
}

void FindBar::xOnEdited()
{
    lookIn(fView);
    if (fView)
        fSearch.step(fView->currentIndex(), true, true);
}

void FindBar::xOnFound(const QModelIndex& cell)
{
    if (!fView || !cell.isValid())
        return;
    fView->setCurrentIndex(cell);
    fView->scrollTo(cell);
    if (fMarks)
        fMarks->update();
}

QString FindBar::countText() const
{
    if (!fView)
        return tr("There is no table in this panel.");
    if (fEdit->text().isEmpty())
        return {};
    const int matches = fSearch.matches();
    if (fSearch.isCounting())
        return tr("%n match(es), %1 % searched", nullptr, matches).arg(fSearch.percent());
    if (matches == 0)
        return tr("Not found");
    return tr("%n match(es)", nullptr, matches);
}

void FindBar::xShowCount()
{
    fCount->setText(countText());
}

void FindBar::xClose()
{
    hide();
    delete fMarks;
    fSearch.look(nullptr, {}, {}, {});
    if (fView)
        fView->setFocus();
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QToolBar::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Escape:
        xClose();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        stepFromHere(!(key->modifiers() & Qt::ShiftModifier));
        return true;
    default:
        return QToolBar::eventFilter(watched, event);
    }
}
