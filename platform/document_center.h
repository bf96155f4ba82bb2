// DocumentCenter: document pickers and open-in menus as data, which a screen or a test answers.
#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

struct DocumentRequest {
    enum class Kind {
        importCopies, ///< the user picks documents, which are copied
        openIn,       ///< the user picks a program that gets `document`
    };
    Kind kind = Kind::importCopies;
    std::vector<std::string> types = {}; ///< "public.item" any, "public.audio" sounds
    std::filesystem::path document = {}; ///< of openIn
    std::string anchor = {};             ///< the button that a menu points at
    /// Called once with what was picked, unless the request was dismissed.
    std::function<void(const std::vector<std::filesystem::path>&)> picked = {};
};

/// At most one request of each kind stands; a newer one takes its place. MAIN.
class DocumentCenter {
public:
    void present(DocumentRequest request);

    /// The request to be shown now; null when there is none. Valid until it is answered.
    const DocumentRequest* current() const {
        return waiting_.empty() ? nullptr : &waiting_.front();
    }

    /// Takes the current request away, hands it the documents and tells the observer. False, and
    /// nothing changed, without one.
    bool pick(const std::vector<std::filesystem::path>& documents);
    /// Takes the current request away. False without one.
    bool dismiss();

    /// Called after every change; an empty one calls nobody.
    void setObserver(std::function<void()> observer) { observer_ = std::move(observer); }

private:
    void tellObserver();

    std::deque<DocumentRequest> waiting_;
    std::function<void()> observer_;
};

} // namespace zephyra
