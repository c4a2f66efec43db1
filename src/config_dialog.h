// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QList>
#include <QPair>
#include <QString>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <string>

class Module;

/// Asks at the start which keys to follow: those of a configuration file, a new choice, or all.
/// Accepted once they are in the module; rejected when the user gives up or a file cannot be
/// opened. Does nothing any more when the module is gone.
class ConfigDialog : public QDialog
{
    Q_OBJECT

public:
    /// `imageDir`, in Latin-1, is put before the names of the images as it stands.
    ConfigDialog(boost::shared_ptr<Module> module, const std::string& imageDir, QWidget* parent);

    static const QString fOpenImage;
    static const QString fNewImage;

private slots:
    void xOnOpen();
    void xOnNew();
    void xOnAll();

private:
    void xSaveAliases(const QList<QPair<QString, QString>>& list);

    boost::weak_ptr<Module> fModule;
};
