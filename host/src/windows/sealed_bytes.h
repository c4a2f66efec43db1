// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// The toolkit trusts the bytes by which it describes a window. With their hash before them, bytes
/// that got changed or cut somewhere do not get to it; nor do those of another major version, and
/// with a key that nobody else has, those that somebody made on purpose.
QByteArray sealed(const QByteArray& bytes, const QByteArray& key = {});

/// Empty for what `sealed` has not made with that key.
QByteArray unsealed(const QByteArray& bytes, const QByteArray& key = {});
