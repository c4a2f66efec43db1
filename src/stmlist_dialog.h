// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QList>
#include <QPair>
#include <QString>

#include <string>
#include <vector>

class QCheckBox;
class QGridLayout;
class QHBoxLayout;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

/// Lets the user choose among key names, and give each chosen key an alias by editing its entry.
/// Made for 100,000 names.
class StmListDialog : public QDialog
{
    Q_OBJECT

public:
    /// `names` are Latin-1 to the dialog, so that every byte of them comes back.
    StmListDialog(const std::vector<std::string>& names, QWidget* parent);

    /// Key name and alias of each chosen key, in the order of the names given to the constructor;
    /// empty until the dialog was accepted.
    const QList<QPair<QString, QString>>& chosen() const { return fChosen; }

    /// Puts a label for the key and an edit for its alias into a row of `layout` and appends both
    /// to `list`. For a page of aliases; the dialog itself has none.
    void xMakeAliasWidget(const QString& name, QGridLayout& layout, int row,
                          QList<QPair<QString, QLineEdit*>>& list);

    static const QString fDevicesStart; ///< what the text of a device key's entry begins with

public slots:
    /// Gathers the checked entries, hidden or not, and accepts the dialog.
    void onOk();

private slots:
    /// Shows the entries that pass the filter, hides the others, sorts the list.
    void xOnFilterChanged();

private:
    QHBoxLayout* xNewButtonRow();
    QHBoxLayout* xNewFilterRow();
    void xAddEntries(const std::vector<std::string>& names);
    bool xIsSorted() const;

public: // the controls and their entries, for who drives or shows them
    QListWidget* fList;
    QCheckBox* fDevicesBox;
    QLineEdit* fFilterEdit;
    QList<QPair<QListWidgetItem*, QString>> fItems; ///< each entry with its key's name
    QList<QPair<QString, QString>> fChosen;
};
