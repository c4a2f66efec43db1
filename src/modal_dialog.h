// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

#include <utility>

/// A dialog for the scope it is made in. It is not on the stack because its parent may be deleted,
/// and it with the parent, while it is open.
template <class Dialog>
class ModalDialog
{
public:
    template <class... Arguments>
    explicit ModalDialog(Arguments&&... arguments)
        : fDialog(new Dialog(std::forward<Arguments>(arguments)...))
    {
    }
    ~ModalDialog() { delete fDialog.data(); }
    ModalDialog(const ModalDialog&) = delete;
    ModalDialog& operator=(const ModalDialog&) = delete;

    /// Runs the dialog; whether the user accepts. False also when it is gone.
    bool exec() { return fDialog->exec() != QDialog::Rejected && !fDialog.isNull(); }

    /// Not for a dialog that may be gone.
    Dialog* operator->() const { return fDialog.data(); }

private:
    QPointer<Dialog> fDialog;
};
