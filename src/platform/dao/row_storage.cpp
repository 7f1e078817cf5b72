#include "platform/dao/row_storage.h"

#include <cstring>
#include <functional>

namespace zelvo::dao::detail {

namespace {

enum : char { kNull = 0, kInteger, kDouble, kBoolean, kText, kBytes };

template <class T>
void Append(std::string& out, T v) {
    char buf[sizeof(T)];
    std::memcpy(buf, &v, sizeof(T));
    out.append(buf, sizeof(T));
}

template <class T>
T Read(const char* p) {
    T v;
    std::memcpy(&v, p, sizeof(T));
    return v;
}

}  // namespace

// ------------------------------------------------------------ PackedValues

PackedValues::Builder::Builder(std::size_t count, std::size_t payloadHint) : count_(count) {
    data_.reserve(count * (sizeof(std::uint32_t) + 1) + payloadHint);
    data_.resize(count * sizeof(std::uint32_t));
}

void PackedValues::Builder::Begin(char kind) {
    auto offset = static_cast<std::uint32_t>(data_.size());
    std::memcpy(data_.data() + next_ * sizeof(std::uint32_t), &offset, sizeof offset);
    ++next_;
    data_.push_back(kind);
}

void PackedValues::Builder::Null() { Begin(kNull); }

void PackedValues::Builder::Integer(std::int64_t v) {
    Begin(kInteger);
    Append(data_, v);
}

void PackedValues::Builder::Double(double v) {
    Begin(kDouble);
    Append(data_, v);
}

void PackedValues::Builder::Boolean(bool v) {
    Begin(kBoolean);
    data_.push_back(v ? 1 : 0);
}

void PackedValues::Builder::Text(std::string_view v) {
    Begin(kText);
    Append(data_, static_cast<std::uint32_t>(v.size()));
    data_.append(v);
}

void PackedValues::Builder::Bytes(const std::uint8_t* data, std::size_t size) {
    Begin(kBytes);
    Append(data_, static_cast<std::uint32_t>(size));
    data_.append(reinterpret_cast<const char*>(data), size);
}

void PackedValues::Builder::Add(const Variant& v) {
    switch (v.kind()) {
        case Variant::Kind::Null: Null(); break;
        case Variant::Kind::Integer: Integer(v.integer()); break;
        case Variant::Kind::Double: Double(v.real()); break;
        case Variant::Kind::Boolean: Boolean(v.boolean()); break;
        case Variant::Kind::Text: Text(v.text()); break;
        case Variant::Kind::Bytes: Bytes(v.bytes().data(), v.bytes().size()); break;
    }
}

PackedValues PackedValues::Builder::Finish() {
    while (next_ < count_) Null();
    PackedValues p;
    p.data_ = std::move(data_);
    p.count_ = count_;
    return p;
}

PackedValues PackedValues::Of(const std::vector<Variant>& values) {
    Builder b(values.size());
    for (const Variant& v : values) b.Add(v);
    return b.Finish();
}

Variant PackedValues::Get(std::size_t i) const {
    const char* p = data_.data() + Read<std::uint32_t>(data_.data() + i * sizeof(std::uint32_t));
    switch (*p++) {
        case kInteger: return Variant(Read<std::int64_t>(p));
        case kDouble: return Variant(Read<double>(p));
        case kBoolean: return Variant(*p != 0);
        case kText: return Variant(std::string(p + sizeof(std::uint32_t), Read<std::uint32_t>(p)));
        case kBytes: {
            const auto* b = reinterpret_cast<const std::uint8_t*>(p + sizeof(std::uint32_t));
            return Variant(zelvo::Bytes(b, b + Read<std::uint32_t>(p)));
        }
        default: return Variant();
    }
}

std::vector<Variant> PackedValues::Unpack() const {
    std::vector<Variant> out;
    out.reserve(count_);
    for (std::size_t i = 0; i < count_; ++i) out.push_back(Get(i));
    return out;
}

// ------------------------------------------------------------ RowKeys

void RowKeys::assign(std::size_t count, std::int64_t value) {
    size_ = count;
    heap_.clear();
    if (count <= kInline) {
        for (std::size_t i = 0; i < count; ++i) inline_[i] = value;
    } else {
        heap_.assign(count, value);
    }
}

void RowKeys::push_back(std::int64_t value) {
    if (size_ < kInline) {
        inline_[size_++] = value;
        return;
    }
    if (size_ == kInline) heap_.assign(inline_, inline_ + kInline);
    heap_.push_back(value);
    ++size_;
}

bool RowKeys::operator==(const RowKeys& other) const {
    if (size_ != other.size_) return false;
    for (std::size_t i = 0; i < size_; ++i)
        if ((*this)[i] != other[i]) return false;
    return true;
}

std::size_t RowKeys::Hash() const {
    std::size_t h = 0;
    for (std::size_t i = 0; i < size_; ++i) h = h * 1000003u ^ std::hash<std::int64_t>()((*this)[i]);
    return h;
}

}  // namespace zelvo::dao::detail
