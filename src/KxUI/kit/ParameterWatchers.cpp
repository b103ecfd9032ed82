#include <KxUI/kit/ParameterWatchers.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Kestrel::UI {

struct ParameterWatchers::List {
    std::vector<std::shared_ptr<const std::function<void()>>> watchers;
};

class ParameterWatchers::Watch final : public ParameterWatch {
public:
    Watch(std::shared_ptr<List> list, std::shared_ptr<const std::function<void()>> watcher)
        : m_list(std::move(list))
        , m_watcher(std::move(watcher)) {}
    ~Watch() override {
        auto& all = m_list->watchers;
        all.erase(std::remove(all.begin(), all.end(), m_watcher), all.end());
    }

private:
    std::shared_ptr<List> m_list;
    std::shared_ptr<const std::function<void()>> m_watcher;
};

ParameterWatchers::ParameterWatchers()
    : m_list(std::make_shared<List>()) {}

ParameterWatchers::~ParameterWatchers() {
    m_list->watchers.clear();
}

std::unique_ptr<ParameterWatch> ParameterWatchers::add(std::function<void()> changed) {
    auto watcher = std::make_shared<const std::function<void()>>(std::move(changed));
    m_list->watchers.push_back(watcher);
    return std::make_unique<Watch>(m_list, std::move(watcher));
}

void ParameterWatchers::tell() {
    const std::shared_ptr<List> list = m_list; // this object may go
    const auto watchers = list->watchers;
    for (const auto& watcher : watchers) {
        const auto& left = list->watchers;
        if (*watcher && std::find(left.begin(), left.end(), watcher) != left.end())
            (*watcher)();
    }
}

} // namespace Kestrel::UI
