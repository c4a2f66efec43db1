// SPDX-License-Identifier: MIT
#include "recording/recording_bar.h"

#include "connection/elided_label.h"
#include "recording/recording.h"

#include <QAction>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

namespace {

const QColor recordingRed(211, 47, 47); // stands out on light and on dark
constexpr double ringWidth = 0.12;      // of its diameter

} // namespace

RecordingDot::RecordingDot(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void RecordingDot::setFilled(bool isFilled)
{
    fIsFilled = isFilled;
    update();
}

QSize RecordingDot::sizeHint() const
{
    const int size = fontMetrics().ascent();
    return {size, size};
}

void RecordingDot::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = ringWidth * width();
    painter.setPen(QPen(recordingRed, line));
    if (fIsFilled)
        painter.setBrush(recordingRed);
    painter.drawEllipse(QRectF(rect()).adjusted(line, line, -line, -line));
}

RecordingRow::RecordingRow(Recording& recording, QWidget* parent)
    : QWidget(parent),
      fRecording(recording),
      fDot(new RecordingDot(this)),
      fText(new ElidedLabel(this)),
      fStopButton(new QPushButton(tr("Stop"), this))
{
    fText->setObjectName("recordingText");
    fStopButton->setObjectName("recordingStop");
    fStopButton->setToolTip(tr("End this recording; its file is kept"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->addWidget(fDot);
    layout->addWidget(fText, 1);
    layout->addWidget(fStopButton);
    connect(fStopButton, &QPushButton::clicked, &recording, &Recording::stop);
    connect(&recording, &Recording::changed, this, &RecordingRow::xShow);
    xShow();
}

void RecordingRow::xShow()
{
    const RecordingState& state = fRecording.state();
    const QString file = QFileInfo(fRecording.file()).fileName();
    const QString text = fRecording.isEnding() ? tr("is being ended") : recordingText(state);
    fText->setText(tr("%1: %2").arg(file, text));
    QString tip = tr("%1, from %2").arg(fRecording.file(), fRecording.robot());
    if (!state.cause.isEmpty())
        tip += '\n' + state.cause;
    fText->setToolTip("<qt>" + tip.toHtmlEscaped().replace('\n', "<br>") + "</qt>");
    fDot->setFilled(state.phase == RecordingState::Phase::Recording);
    fStopButton->setEnabled(!fRecording.isEnding());
    fStopButton->setAccessibleName(tr("Stop recording %1").arg(file));
}

RecordingBar::RecordingBar(QWidget* parent) : QToolBar(parent), fPane(new QWidget(this))
{
    setObjectName("recordingBar");
    setWindowTitle(tr("Recordings"));
    setMovable(false);
    toggleViewAction()->setVisible(false);
    auto* layout = new QVBoxLayout(fPane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    fPane->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(fPane);
    hide();
}

void RecordingBar::add(Recording& recording)
{
    auto* row = new RecordingRow(recording, fPane);
    fPane->layout()->addWidget(row);
    connect(&recording, &QObject::destroyed, this, [this, row] {
        delete row;
        --fCount;
        setVisible(true);
    });
    ++fCount;
    setVisible(true);
}

void RecordingBar::setVisible(bool)
{
    QToolBar::setVisible(fCount > 0);
}
