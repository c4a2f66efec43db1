// SPDX-License-Identifier: MIT
#include "dialogs/loss_limit_dialog.h"

#include "connection/loss_limit.h"

#include <QCoreApplication>
#include <QInputDialog>

#include <cmath>

namespace {

/// The context that translators find the texts in.
struct LossLimitDialog
{
    Q_DECLARE_TR_FUNCTIONS(LossLimitDialog)
};

double inMinutes(std::chrono::seconds time)
{
    return static_cast<double>(time.count()) / 60;
}

} // namespace

void askLossLimit(QWidget* parent, std::chrono::seconds present,
                  const std::function<void(std::chrono::seconds)>& use)
{
    auto* dialog = new QInputDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(LossLimitDialog::tr("Wait for the robot"));
    dialog->setLabelText(LossLimitDialog::tr("Minutes that panels wait for a robot that is away "
                                             "before they give up (0: none):"));
    dialog->setInputMode(QInputDialog::DoubleInput);
    dialog->setDoubleRange(0, inMinutes(longestLossLimit));
    dialog->setDoubleDecimals(1);
    dialog->setDoubleValue(inMinutes(present));
    QObject::connect(dialog, &QInputDialog::doubleValueSelected, dialog, [use](double minutes) {
        use(std::chrono::seconds(std::llround(minutes * 60)));
    });
    dialog->open();
}
