// The counted form of collections: the base name with "Count", then one object for each element
// under the base name with its index.
//
// A vector V has GetCount() and GetElement(int), which gives the element as ISerialize or
// IDeSerialize, by reference or as a temporary adapter.
#pragma once

#include "serialization/DataStream.h"
#include "serialization/ObjectProbe.h"
#include "serialization/Serializable.h"

#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

namespace Lathe::Serialization {

inline std::string MakeElementName(const char* baseName, int index) {
    return baseName + std::to_string(index);
}

// How many elements a reader makes room for, given the count that the stream claims and the count
// that the reader already has. A damaged count must not take all memory: room for many new elements
// is given only as far as the stream holds them, with gaps no longer than MaxMissingElements.
inline constexpr int MaxMissingElements = 1024;
int GetTrustedCount(const IReadDataStream& input, const char* baseName, int claimedCount,
                    int presentCount);

template <class V>
class TVectorSerializer : public ISerialize {
public:
    TVectorSerializer(const V& vector, const char* baseName)
        : m_Vector(vector), m_BaseName(baseName) {}

    bool Serialize(IWriteDataStream& output) const override {
        const int count = m_Vector.GetCount();
        bool result = output.WriteInt((m_BaseName + "Count").c_str(), &count);
        for (int i = 0; i < count; ++i) {
            const auto& element = m_Vector.GetElement(i);
            result &= output.WriteObject(MakeElementName(m_BaseName.c_str(), i).c_str(), element);
        }
        return result;
    }

private:
    const V& m_Vector;
    std::string m_BaseName;
};

// Reads as many elements as the vector has; those that the stream doesn't hold stay as they are.
template <class V>
class TVectorDeSerializer : public IDeSerialize {
public:
    TVectorDeSerializer(V& vector, const char* baseName) : m_Vector(vector), m_BaseName(baseName) {}

    bool DeSerialize(const IReadDataStream& input) override {
        bool result = true;
        const int count = m_Vector.GetCount();
        for (int i = 0; i < count; ++i) {
            auto&& element = m_Vector.GetElement(i);
            result &=
                ReadObjectOrKeep(input, MakeElementName(m_BaseName.c_str(), i).c_str(), element);
        }
        return result;
    }

private:
    V& m_Vector;
    std::string m_BaseName;
};

// Resizes the vector first, once, with SetCount(int). Without a count the vector becomes empty and
// the read fails; an incremental stream without a count leaves the size.
template <class V>
class TDynamicVectorDeSerializer : public IDeSerialize {
public:
    TDynamicVectorDeSerializer(V& vector, const char* baseName)
        : m_Vector(vector), m_BaseName(baseName) {}

    bool DeSerialize(const IReadDataStream& input) override {
        int claimed = 0;
        const bool hasCount = input.ReadInt((m_BaseName + "Count").c_str(), &claimed);
        bool result = input.IsIncremental();
        if (hasCount || !result) {
            const int count =
                GetTrustedCount(input, m_BaseName.c_str(), claimed, m_Vector.GetCount());
            m_Vector.SetCount(count);
            result = hasCount && count == claimed;
        }
        return TVectorDeSerializer<V>(m_Vector, m_BaseName.c_str()).DeSerialize(input) && result;
    }

private:
    V& m_Vector;
    std::string m_BaseName;
};

// A list of the standard library, or another of its sequences, seen as a vector V. The elements
// are T or pointers to T; the indices are asked for in rising order.
template <class T, class C>
class TStdContainerVector {
public:
    explicit TStdContainerVector(C& container)
        : m_Container(container), m_Position(container.begin()) {}

    int GetCount() const { return static_cast<int>(m_Container.size()); }
    void SetCount(int count) {
        while (GetCount() > count) {
            if constexpr (std::is_pointer_v<Element>)
                delete m_Container.back();
            m_Container.pop_back();
        }
        while (GetCount() < count) {
            if constexpr (std::is_constructible_v<Element, T*>)
                m_Container.emplace_back(new T); // The container's, or its owner's.
            else
                m_Container.emplace_back();
        }
        m_Index = 0;
        m_Position = m_Container.begin();
    }
    auto& GetElement(int index) const {
        if (index < m_Index) {
            m_Index = 0;
            m_Position = m_Container.begin();
        }
        std::advance(m_Position, index - m_Index);
        m_Index = index;
        if constexpr (requires { **m_Position; })
            return **m_Position;
        else
            return *m_Position;
    }

private:
    using Element = typename std::remove_const_t<C>::value_type;

    C& m_Container;
    mutable decltype(std::declval<C&>().begin()) m_Position;
    mutable int m_Index = 0;
};

template <class C>
class TStdContainerSerializer : public ISerialize {
public:
    TStdContainerSerializer(const C& container, const char* baseName)
        : m_Container(container), m_BaseName(baseName) {}

    bool Serialize(IWriteDataStream& output) const override {
        using Vector = TStdContainerVector<ISerialize, const C>;
        const Vector vector(m_Container);
        return TVectorSerializer<Vector>(vector, m_BaseName.c_str()).Serialize(output);
    }

private:
    const C& m_Container;
    std::string m_BaseName;
};

// The container owns its elements, plain pointers among them.
template <class T, class C>
class TStdContainerDeSerializer : public IDeSerialize {
public:
    TStdContainerDeSerializer(C& container, const char* baseName)
        : m_Container(container), m_BaseName(baseName) {}

    bool DeSerialize(const IReadDataStream& input) override {
        using Vector = TStdContainerVector<T, C>;
        Vector vector(m_Container);
        return TDynamicVectorDeSerializer<Vector>(vector, m_BaseName.c_str()).DeSerialize(input);
    }

private:
    C& m_Container;
    std::string m_BaseName;
};

} // namespace Lathe::Serialization
