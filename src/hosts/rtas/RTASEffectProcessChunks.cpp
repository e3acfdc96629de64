// The instance's state as the host's sessions hold it.
#include "hosts/rtas/RTASEffectProcess.h"
#include "serialization/XmlDataObject.h"

#include <cstring>
#include <limits>
#include <string_view>

namespace LatheExt::RTASPlugin {

using Lathe::Serialization::CXmlDataObject;

namespace {

constexpr const char* RootName = "Preset";

const char* GetData(const SChunkRecord& record) {
    return reinterpret_cast<const char*>(&record + 1);
}

// In bytes; 0 or less for a record without data.
long GetDataSize(const SChunkRecord& record) {
    return static_cast<long>(record.m_Size) - static_cast<long>(sizeof(SChunkRecord));
}

// With the zero behind the text.
long GetRecordSize(const std::string& text) {
    return static_cast<long>(sizeof(SChunkRecord) + text.size() + 1);
}

} // namespace

// An instance that isn't prepared gives an empty document. False when there can be no text.
bool CRTASEffectProcess::MakeStateText(std::string& text) const {
    CXmlDataObject document(RootName);
    if (m_Internals.IsPrepared() && !m_Internals.SerializeState(document))
        return false;
    char* chars = nullptr;
    if (!document.GetText(chars))
        return false;
    text = std::unique_ptr<char[]>(chars).get();
    return GetRecordSize(text) <= std::numeric_limits<std::int32_t>::max();
}

long CRTASEffectProcess::GetChunkSize(std::uint32_t code, long* size) {
    if (code != m_PluginStateChunkID)
        return CProcess::GetChunkSize(code, size);
    std::string text;
    *size = MakeStateText(text) ? GetRecordSize(text) : 0;
    return 0;
}

long CRTASEffectProcess::GetChunk(std::uint32_t code, SChunkRecord* record) {
    if (code != m_PluginStateChunkID)
        return CProcess::GetChunk(code, record);
    std::string text;
    // The state may have grown since the host asked for its size.
    if (MakeStateText(text) && GetRecordSize(text) <= record->m_Size) {
        record->m_Size = static_cast<std::int32_t>(GetRecordSize(text));
        std::memcpy(record + 1, text.c_str(), text.size() + 1);
    }
    return 0;
}

long CRTASEffectProcess::SetChunk(std::uint32_t code, const SChunkRecord* record) {
    if (code == m_PluginStateChunkID && GetDataSize(*record) > 0) {
        CXmlDataObject document(RootName);
        if (document.Parse(GetData(*record), static_cast<int>(GetDataSize(*record))))
            m_Internals.DeSerializeState(document);
    }
    return CProcess::SetChunk(code, record);
}

long CRTASEffectProcess::CompareChunk(const SChunkRecord* record, char* isEqual) {
    const long status = CProcess::CompareChunk(record, isEqual);
    if (!*isEqual || record->m_Code != m_PluginStateChunkID)
        return status;
    const long size = GetDataSize(*record);
    std::string text;
    *isEqual = size > 0 && MakeStateText(text) && GetData(*record)[size - 1] == 0 &&
               text == GetData(*record);
    return status;
}

} // namespace LatheExt::RTASPlugin
