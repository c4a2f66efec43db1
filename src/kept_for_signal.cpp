// SPDX-License-Identifier: MIT
#include "kept_for_signal.h"

#include <QWidget>

KeptForSignal::KeptForSignal(QWidget* widget, QWidget* owner) : fWidget(widget)
{
    fConnection = QObject::connect(owner, &QObject::destroyed, [this] {
        fIsOrphan = true;
        fWidget->setParent(nullptr);
    });
}

KeptForSignal::~KeptForSignal()
{
    QObject::disconnect(fConnection);
    if (fIsOrphan)
        fWidget->deleteLater();
}
