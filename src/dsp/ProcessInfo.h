// What a filter declares of its audio connections: inputs, outputs and the buses that group them.
#pragma once

#include "core/containers/Collection.h"
#include "datamodel/objects/ObjectInfo.h"

namespace Lathe::Audio::DSP {

class CInputInfo : public DataModel::CObjectInfo {
public:
    using CObjectInfo::CObjectInfo;
};

class COutputInfo : public DataModel::CObjectInfo {
public:
    using CObjectInfo::CObjectInfo;
};

class CBusInfo : public DataModel::CObjectInfo {
public:
    CBusInfo() = default;
    CBusInfo(const char* name, const char* description, int firstChannel, int channelsCount)
        : CObjectInfo(name, description),
          m_FirstChannel(firstChannel),
          m_ChannelsCount(channelsCount) {}

    int GetFirstChannel() const { return m_FirstChannel; }
    int GetChannelsCount() const { return m_ChannelsCount; }

private:
    int m_FirstChannel = 0;
    int m_ChannelsCount = 0;
};

class IIOConfiguration : public virtual DataModel::IConstObjectInfo {
public:
    virtual const Containers::IConstVector<CInputInfo>& GetInputs() const LATHE_REALTIME = 0;
    virtual const Containers::IConstVector<COutputInfo>& GetOutputs() const LATHE_REALTIME = 0;
    virtual const Containers::IConstVector<CBusInfo>& GetInputBuses() const = 0;
    virtual const Containers::IConstVector<CBusInfo>& GetOutputBuses() const = 0;
};

class CIOConfiguration : public DataModel::CObjectInfo, public virtual IIOConfiguration {
public:
    using CInputs = CoreUtilities::TDynamicCollection<CInputInfo, CInputInfo>;
    using COutputs = CoreUtilities::TDynamicCollection<COutputInfo, COutputInfo>;
    using CBuses = CoreUtilities::TDynamicCollection<CBusInfo, CBusInfo>;

    explicit CIOConfiguration(const char* name = nullptr, const char* description = nullptr)
        : CObjectInfo(name, description) {}

    const Containers::IConstVector<CInputInfo>& GetInputs() const LATHE_REALTIME override {
        return m_Inputs;
    }
    const Containers::IConstVector<COutputInfo>& GetOutputs() const LATHE_REALTIME override {
        return m_Outputs;
    }
    const Containers::IConstVector<CBusInfo>& GetInputBuses() const override {
        return m_InputBuses;
    }
    const Containers::IConstVector<CBusInfo>& GetOutputBuses() const override {
        return m_OutputBuses;
    }

    CInputs m_Inputs;
    COutputs m_Outputs;
    CBuses m_InputBuses;
    CBuses m_OutputBuses;
};

class IProcessInfo : public virtual IIOConfiguration {
public:
    // The alternatives to this, the default configuration.
    virtual const Containers::IConstVector<CIOConfiguration>& GetIOConfigurations() const
        LATHE_REALTIME = 0;
    virtual int GetDefaultIOConfiguration() const = 0;
};

class CProcessInfo : public CIOConfiguration, public IProcessInfo {
public:
    using CIOConfigurations = CoreUtilities::TDynamicCollection<CIOConfiguration, CIOConfiguration>;

    // Named "Main". The names come from the two arrays, which may be null.
    CProcessInfo(int inputs, int outputs, const CInputInfo* inputInfos = nullptr,
                 const COutputInfo* outputInfos = nullptr);

    const Containers::IConstVector<CIOConfiguration>& GetIOConfigurations() const
        LATHE_REALTIME override {
        return m_IOConfigurations;
    }
    int GetDefaultIOConfiguration() const override { return m_DefaultIOConfiguration; }

    CIOConfigurations m_IOConfigurations;
    int m_DefaultIOConfiguration = -1;
};

} // namespace Lathe::Audio::DSP
