// SPDX-License-Identifier: MIT
#pragma once

#include <boost/shared_ptr.hpp>

class Model;
class QString;
class QWidget;

/// Asks the user of a panel or dialog for configuration files. The texts are translated as that
/// widget's own. All dialogs are modal, and go with the widget if it is deleted meanwhile.
class ConfigFiles
{
public:
    explicit ConfigFiles(QWidget& parent) : fParent(parent) {}

    /// The file to open; empty when the user cancels, or the parent is gone.
    QString askToOpen(const QString& caption) const;
    /// Asks where to save `model`, and does; a failure is shown.
    void save(const boost::shared_ptr<const Model>& model) const;
    void showError(const QString& text) const;

private:
    QString xFilter() const;
    QString xTr(const char* text) const;

    QWidget& fParent;
};
