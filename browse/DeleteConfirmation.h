#pragma once

#include "controls/Sheet.h"

#include <functional>

/// Asks whether an event is really to be deleted. The answer that deletes nothing has the focus.
class DeleteConfirmation : public Sheet {
    Q_OBJECT

public:
    /// `onConfirm` is called when the person chose to delete; the sheet closes with any answer.
    DeleteConfirmation(const std::function<void()> &onConfirm, QWidget *over);
};
