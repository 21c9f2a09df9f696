#pragma once

#include <QString>
#include <exception>

/// A failure with words for the person at the screen. Everything that the backend throws is one.
struct LocalizedError : std::exception {
    /// What happened, as it is shown.
    virtual QString localizedDescription() const = 0;
    /// The kind of failure only: a log has no business with what the service or a member wrote.
    const char *what() const noexcept override { return "LocalizedError"; }
};

/// What the person reads of the exception that is being handled, whatever it is: for a view's
/// `catch (...)`, so that no error, expected or not, leaves the view busy for ever.
QString currentFailure();
