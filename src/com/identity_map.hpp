#pragma once

// One COM object per core object: the same core object is always handed out
// as the same COM object, so identity comparisons work from scripts.

#include <memory>
#include <mutex>
#include <unordered_map>

namespace quillbank::com {

template <class Core, class Object>
class IdentityMap {
public:
    // The COM object serving `core`, made when there is none yet; the caller
    // gets a new reference either way.
    Object* Wrap(const std::shared_ptr<Core>& core) {
        const std::lock_guard<std::mutex> lock(lock_);
        const auto found = objects_.find(core.get());
        if (found != objects_.end()) {
            found->second->AddRef();
            return found->second;
        }
        auto* object = new Object(core);
        objects_.emplace(core.get(), object);
        return object;
    }

    // Called by an object as it goes.
    void Forget(const Core* core, const Object* object) {
        const std::lock_guard<std::mutex> lock(lock_);
        const auto found = objects_.find(core);
        if (found != objects_.end() && found->second == object) {
            objects_.erase(found);
        }
    }

private:
    std::mutex lock_;
    std::unordered_map<const Core*, Object*> objects_;
};

}  // namespace quillbank::com
