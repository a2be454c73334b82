#include "services/property_list_shape.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace vantle {
namespace {

// Levels of nesting counted here beyond those of the values: the root element of an XML list,
// and the leaves of a binary one.
constexpr int kMaxNesting = kPropertyListMaxDepth + 2;

// The nesting of an XML list's elements, counted from its tags. Tags inside comments or
// character data count too, which can only make the count higher than the library's own.
bool xmlNestingWithinLimit(std::string_view text) {
    int depth = 0;
    for (std::size_t open = text.find('<'); open != std::string_view::npos && open + 1 < text.size();
         open = text.find('<', open + 1)) {
        const char next = text[open + 1];
        if (next == '/') {
            depth = std::max(depth - 1, 0);
            continue;
        }
        if (next == '?' || next == '!') {
            continue;
        }
        const std::size_t close = text.find('>', open + 1);
        if (close == std::string_view::npos) {
            break;
        }
        if (text[close - 1] != '/' && ++depth > kMaxNesting) {
            return false;
        }
        // Anything up to the end of this tag is part of it; looking on from there keeps the
        // scan linear whatever the text holds.
        open = close;
    }
    return true;
}

// The object table of a binary list: where each object starts and how its references read.
class BinaryTable {
public:
    static std::optional<BinaryTable> read(std::string_view bytes) {
        constexpr std::size_t kHeader = 8;
        constexpr std::size_t kTrailer = 32;
        if (bytes.size() < kHeader + kTrailer + 1) {
            return std::nullopt;
        }
        BinaryTable table(bytes);
        const std::size_t trailer = bytes.size() - kTrailer;
        table.offsetSize_ = static_cast<unsigned char>(bytes[trailer + 6]);
        table.referenceSize_ = static_cast<unsigned char>(bytes[trailer + 7]);
        if (table.offsetSize_ < 1 || table.offsetSize_ > 8 || table.referenceSize_ < 1 || table.referenceSize_ > 8) {
            return std::nullopt;
        }
        table.objects_ = table.number(trailer + 8, 8);
        table.top_ = table.number(trailer + 16, 8);
        table.tableOffset_ = table.number(trailer + 24, 8);
        if (table.objects_ == 0 || table.top_ >= table.objects_ || table.tableOffset_ <= kHeader ||
            table.tableOffset_ > trailer || table.objects_ > (trailer - table.tableOffset_) / table.offsetSize_) {
            return std::nullopt;
        }
        return table;
    }

    std::uint64_t objects() const { return objects_; }
    std::uint64_t top() const { return top_; }

    // The objects an object refers to (for a dictionary its keys, then its values); none for a
    // value that holds no others; empty when the object does not lie within the file.
    std::optional<std::vector<std::uint64_t>> children(std::uint64_t object) const {
        const std::uint64_t offset = number(tableOffset_ + object * offsetSize_, offsetSize_);
        if (offset < 8 || offset >= tableOffset_) {
            return std::nullopt;
        }
        const auto marker = static_cast<unsigned char>(bytes_[offset]);
        const unsigned type = marker >> 4;
        // Arrays, the two kinds of set and dictionaries hold references; nothing else does.
        if (type < 0xA || type > 0xD) {
            return std::vector<std::uint64_t>{};
        }
        std::uint64_t position = offset + 1;
        std::uint64_t count = marker & 0x0F;
        if (count == 0x0F) {
            if (position >= tableOffset_) {
                return std::nullopt;
            }
            const auto countMarker = static_cast<unsigned char>(bytes_[position]);
            const unsigned countSize = 1U << (countMarker & 0x0F);
            if ((countMarker >> 4) != 1 || countSize > 8 || countSize > tableOffset_ - position - 1) {
                return std::nullopt;
            }
            count = number(position + 1, countSize);
            position += 1 + countSize;
        }
        const std::uint64_t room = (tableOffset_ - position) / referenceSize_;
        const std::uint64_t references = type == 0xD ? 2 * std::min(count, room) : count;
        if (count > room || references > room) {
            return std::nullopt;
        }
        std::vector<std::uint64_t> result;
        result.reserve(references);
        for (std::uint64_t index = 0; index < references; ++index) {
            const std::uint64_t child = number(position + index * referenceSize_, referenceSize_);
            if (child >= objects_) {
                return std::nullopt;
            }
            result.push_back(child);
        }
        return result;
    }

private:
    explicit BinaryTable(std::string_view bytes) : bytes_(bytes) {}

    // A big-endian unsigned number of size bytes at offset; the caller keeps it in the file.
    std::uint64_t number(std::uint64_t offset, unsigned size) const {
        std::uint64_t value = 0;
        for (unsigned index = 0; index < size; ++index) {
            value = value << 8 | static_cast<unsigned char>(bytes_[offset + index]);
        }
        return value;
    }

    std::string_view bytes_;
    unsigned offsetSize_ = 0;
    unsigned referenceSize_ = 0;
    std::uint64_t objects_ = 0;
    std::uint64_t top_ = 0;
    std::uint64_t tableOffset_ = 0;
};

// Walks the objects reachable from the top one without recursion, working out for each its
// nesting and the number of values it unfolds to; each object is worked out once, however
// often it is shared.
bool binaryShapeWithinLimits(std::string_view bytes) {
    const std::optional<BinaryTable> table = BinaryTable::read(bytes);
    if (!table) {
        return false;
    }
    enum class State : unsigned char { unseen, open, done };
    std::vector<State> states(table->objects(), State::unseen);
    std::vector<int> heights(table->objects(), 0);
    std::vector<std::uint64_t> values(table->objects(), 0);

    struct Frame {
        std::uint64_t object;
        std::vector<std::uint64_t> children;
        std::size_t next = 0;
        int height = 0;
        std::uint64_t values = 1;
    };
    std::vector<Frame> stack;
    auto open = [&](std::uint64_t object) {
        std::optional<std::vector<std::uint64_t>> children = table->children(object);
        if (!children || stack.size() >= static_cast<std::size_t>(kMaxNesting)) {
            return false;
        }
        states[object] = State::open;
        stack.push_back(Frame{object, std::move(*children)});
        return true;
    };
    if (!open(table->top())) {
        return false;
    }
    for (;;) {
        Frame& frame = stack.back();
        if (frame.next < frame.children.size()) {
            const std::uint64_t child = frame.children[frame.next++];
            if (states[child] == State::open) {
                return false;  // an object that contains itself
            }
            if (states[child] == State::unseen) {
                if (!open(child)) {
                    return false;
                }
                continue;
            }
            frame.height = std::max(frame.height, heights[child]);
            frame.values += values[child];
            if (frame.values > kPropertyListMaxValues) {
                return false;
            }
            continue;
        }
        const std::uint64_t object = frame.object;
        heights[object] = frame.height + 1;
        values[object] = frame.values;
        states[object] = State::done;
        stack.pop_back();
        if (heights[object] > kMaxNesting) {
            return false;
        }
        if (stack.empty()) {
            return true;
        }
        Frame& parent = stack.back();
        parent.height = std::max(parent.height, heights[object]);
        parent.values += values[object];
        if (parent.values > kPropertyListMaxValues) {
            return false;
        }
    }
}

}  // namespace

bool hasReadablePropertyListShape(std::string_view bytes) {
    if (bytes.starts_with("bplist")) {
        return binaryShapeWithinLimits(bytes);
    }
    return xmlNestingWithinLimit(bytes);
}

}  // namespace vantle
