// SPDX-License-Identifier: MIT
#include "windows/sealed_bytes.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>

namespace {

constexpr auto hash = QCryptographicHash::Sha256;

} // namespace

QByteArray sealed(const QByteArray& bytes, const QByteArray& key)
{
    const QByteArray version = QByteArray::number(QT_VERSION_MAJOR);
    return QMessageAuthenticationCode::hash(bytes, key + version, hash) + bytes;
}

QByteArray unsealed(const QByteArray& bytes, const QByteArray& key)
{
    const QByteArray content = bytes.mid(QCryptographicHash::hashLength(hash));
    return sealed(content, key) == bytes ? content : QByteArray();
}
