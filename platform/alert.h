// AlertCenter: alerts as data, which a screen or a test shows and answers.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

struct AlertAction {
    std::string title;
    /// Called once with the text of the alert's field (empty without one); an empty one does
    /// nothing.
    std::function<void(const std::string& text)> chosen = {};
    bool destructive = false; ///< shown as a warning: it removes something
};

struct AlertTextField {
    std::string placeholder;
    std::string text; ///< what stands in it at first
    bool centred = false;
    bool autoCorrects = true;
    bool autoCapitalises = true;
    bool showsClearButton = false;
    std::string returnKey = {}; ///< what the keyboard's return key says; empty: its usual label
};

struct Alert {
    std::string title;
    std::string message;
    std::vector<AlertAction> actions; ///< from left to right
    std::optional<AlertTextField> textField = {};
};

/// Keeps alerts until they are answered, in the order in which they were presented. MAIN.
class AlertCenter {
public:
    /// Queues alert and tells the observer. One without a text field that says what a waiting one
    /// says is dropped.
    void present(Alert alert);

    /// The alert to be shown now; null when there is none. Valid until it is answered.
    const Alert* current() const { return waiting_.empty() ? nullptr : &waiting_.front(); }
    /// How many wait, the current one counted.
    std::size_t count() const { return waiting_.size(); }

    /// Takes the current alert away, calls its action of that index with text and tells the
    /// observer. False, and nothing changed, without an alert or such an action.
    bool answer(std::size_t action, const std::string& text = {});
    /// The same by the title of the action, the first of them from the left.
    bool answer(const std::string& title, const std::string& text = {});

    /// Called after every alert presented or answered; it may answer. An empty one calls nobody.
    void setObserver(std::function<void()> observer) { observer_ = std::move(observer); }

private:
    void tellObserver();

    std::deque<Alert> waiting_;
    std::function<void()> observer_;
};

/// A failure told to the user in one line: an alert "Warning" with the action "Ok". MAIN.
void presentWarning(AlertCenter& alerts, std::string message);

} // namespace zephyra
