#include "audio/control_plan.h"

#include <set>

namespace vantle::ControlPlan {
namespace {

struct LeafWalk {
    const std::function<std::vector<std::uint32_t>(std::uint32_t)>& children;
    std::set<std::uint32_t> path;
    std::set<std::uint32_t> leaves;
    bool cycle = false;

    void visit(std::uint32_t id) {
        if (path.count(id) != 0) {
            cycle = true;
            return;
        }
        path.insert(id);
        const std::vector<std::uint32_t> subDevices = children(id);
        if (subDevices.empty()) {
            leaves.insert(id);
        }
        for (std::uint32_t child : subDevices) {
            visit(child);
        }
        path.erase(id);
    }
};

}  // namespace

std::vector<std::uint32_t> audioLeaves(std::uint32_t root,
                                       const std::function<std::vector<std::uint32_t>(std::uint32_t)>& children) {
    LeafWalk walk{children, {}, {}, false};
    walk.visit(root);
    if (walk.cycle || walk.leaves.empty() || walk.leaves.size() > limit) {
        return {};
    }
    return {walk.leaves.begin(), walk.leaves.end()};
}

}  // namespace vantle::ControlPlan
