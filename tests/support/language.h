// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// What speak() began ends: new windows show their texts as they are written.
inline void forgetLanguage()
{
    qDeleteAll(qApp->findChildren<QTranslator*>(QString(), Qt::FindDirectChildrenOnly));
}
