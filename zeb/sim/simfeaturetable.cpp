#include "sim/simfeaturetable.h"

#include <algorithm>

namespace ZebCPP {

namespace {

using Table = std::vector<std::unique_ptr<SimFeatureDef>>;

SimFeatureDef& add(Table& table, std::string name, FeatureDataType type)
{
    table.push_back(std::make_unique<SimFeatureDef>());
    SimFeatureDef& def = *table.back();
    def.name = std::move(name);
    def.type = type;
    return def;
}

std::function<void(int64_t&, int64_t&)> fixedRange(int64_t minimum, int64_t maximum)
{
    return [minimum, maximum](int64_t& lo, int64_t& hi) {
        lo = minimum;
        hi = maximum;
    };
}

template <typename T>
void bindInt(SimFeatureDef& def, T& value, int64_t minimum, int64_t maximum)
{
    def.getInt = [&value](int64_t& v) {
        v = static_cast<int64_t>(value);
        return ZebErrorSuccess;
    };
    def.setInt = [&value](int64_t v) {
        value = static_cast<T>(v);
        return ZebErrorSuccess;
    };
    def.intRange = fixedRange(minimum, maximum);
}

void readOnlyInt(Table& table, std::string name, std::function<int64_t()> get)
{
    SimFeatureDef& def = add(table, std::move(name), FeatureDataInt);
    def.writable = false;
    def.getInt = [get](int64_t& v) {
        v = get();
        return ZebErrorSuccess;
    };
    def.intRange = fixedRange(0, INT32_MAX);
}

void readOnlyString(Table& table, std::string name, std::string text)
{
    SimFeatureDef& def = add(table, std::move(name), FeatureDataString);
    def.writable = false;
    def.getString = [text](std::string& v) {
        v = text;
        return ZebErrorSuccess;
    };
}

void floatValue(Table& table, std::string name, double& value, double minimum, double maximum)
{
    SimFeatureDef& def = add(table, std::move(name), FeatureDataFloat);
    def.floatMin = minimum;
    def.floatMax = maximum;
    def.getFloat = [&value](double& v) {
        v = value;
        return ZebErrorSuccess;
    };
    def.setFloat = [&value](double v) {
        value = v;
        return ZebErrorSuccess;
    };
}

void addIdentity(Table& table, SimCameraState& s)
{
    const SimCameraDescription& d = s.description;
    readOnlyString(table, "DeviceModelName", d.model);
    readOnlyString(table, "DeviceSerialNumber", d.serial);
    readOnlyString(table, "DeviceManufacturerInfo", d.firmware);
    readOnlyInt(table, "Width", [&s] { return s.sensor.width(); });
    readOnlyInt(table, "Height", [&s] { return s.sensor.height(); });
}

void addImageFeatures(Table& table, SimCameraState& s)
{
    const std::string& filter = s.description.sensor.colorFilter;
    SimFeatureDef& format = add(table, "PixelFormat", FeatureDataEnum);
    format.entries = {(filter == "None" ? std::string("Mono") : filter) + std::to_string(s.description.sensor.bitDepth)};
    format.lockable = true;
    bindInt(format, s.pixelFormat, 0, 0);

    if (s.description.hasPixelColorFilter) {
        SimFeatureDef& cfa = add(table, "PixelColorFilter", FeatureDataEnum);
        cfa.entries = {"None", "BayerRG", "BayerGB", "BayerGR", "BayerBG"};
        cfa.writable = false;
        const int64_t index = std::find(cfa.entries.begin(), cfa.entries.end(), filter) - cfa.entries.begin();
        cfa.getInt = [index](int64_t& v) {
            v = index;
            return ZebErrorSuccess;
        };
    }
    floatValue(table, "ExposureTime", s.exposureUs, 10, 1e6);
    floatValue(table, "Gain", s.gainDb, 0, 24);
    floatValue(table, "SimLightLevel", s.lightPercent, 0, 100);

    SimFeatureDef& start = add(table, "AcquisitionStart", FeatureDataCommand);
    start.readable = false;
    start.run = [&s] {
        s.streaming = true;
        return ZebErrorSuccess;
    };
    SimFeatureDef& stop = add(table, "AcquisitionStop", FeatureDataCommand);
    stop.readable = false;
    stop.run = [&s] {
        s.streaming = false;
        return ZebErrorSuccess;
    };
    readOnlyInt(table, "TLParamsLocked", [&s] { return s.streaming ? 1 : 0; });

    SimFeatureDef& userSet = add(table, "UserSetSelector", FeatureDataEnum);
    userSet.entries = {"Default", "UserSet1", "UserSet2"};
    userSet.lockable = true;
    bindInt(userSet, s.userSet, 0, 2);
    SimFeatureDef& save = add(table, "UserSetSave", FeatureDataCommand);
    save.readable = false;
    save.writableNow = [&s] { return s.userSet != 0; }; // the factory set is never overwritten
    save.run = [] { return ZebErrorSuccess; };
}

void addMapFeatures(Table& table, SimCameraState& s)
{
    SimFeatureDef& select = add(table, "DefectPixelCorrection_MapSelect", FeatureDataEnum);
    for (uint32_t slot = 0; slot < s.maps.slotCount(); ++slot)
        select.entries.push_back("DefPixMap" + std::to_string(slot));
    select.lockable = true;
    bindInt(select, s.selectedSlot, 0, s.maps.slotCount() - 1);

    readOnlyInt(table, "DefectPixelCorrection_MapMaxSize", [&s] { return s.reportedMapMaxSize(); });
    readOnlyInt(table, "DefectPixelCorrection_MapSize",
                [&s] { return static_cast<int64_t>(s.maps.entries(s.selectedSlot).size()); });
    readOnlyInt(table, "DefectPixelCorrection_Revision", [&s] { return s.maps.revision(); });

    SimFeatureDef& index = add(table, "DefectPixelCorrection_MapIndex", FeatureDataInt);
    bindInt(index, s.mapIndex, 0, int64_t(s.maps.maxSize()) - 1);

    const int64_t coordinateMax = s.maps.revision() == 4 ? 0x3FFF : 0xFFFF;
    auto coordinate = [&](const char* name, bool isX) {
        SimFeatureDef& def = add(table, name, FeatureDataInt);
        def.lockable = true;
        def.writableNow = [&s] { return s.selectedSlot != 0; };
        def.intRange = fixedRange(0, coordinateMax);
        def.getInt = [&s, isX](int64_t& v) {
            const auto& entries = s.maps.entries(s.selectedSlot);
            if (s.mapIndex >= static_cast<int64_t>(entries.size()))
                return ZebErrorInvalidValue;
            const SimControl::SimMapEntry& e = entries[static_cast<size_t>(s.mapIndex)];
            v = isX ? e.x : e.y;
            return ZebErrorSuccess;
        };
        def.setInt = [&s, isX](int64_t v) {
            const auto i = static_cast<uint32_t>(s.mapIndex);
            return isX ? s.maps.setX(s.selectedSlot, i, static_cast<uint32_t>(v))
                       : s.maps.setY(s.selectedSlot, i, static_cast<uint32_t>(v));
        };
    };
    coordinate("DefectPixelCorrection_X", true);
    coordinate("DefectPixelCorrection_Y", false);

    SimFeatureDef& enable = add(table, "DefectPixelCorrectionEnable_Control", FeatureDataBool);
    enable.getInt = [&s](int64_t& v) {
        v = s.correctionEnabled ? 1 : 0;
        return ZebErrorSuccess;
    };
    enable.setInt = [&s](int64_t v) {
        s.correctionEnabled = v != 0;
        return ZebErrorSuccess;
    };
    SimFeatureDef& mark = add(table, "DefectPixelCorrectionMark_Control", FeatureDataEnum);
    mark.entries = {"Off", "Mark"};
    bindInt(mark, s.correctionMark, 0, 1);
}

void addFileAccess(Table& table, SimCameraState& s, uint32_t operationDelayMs)
{
    SimFileStore& f = *s.files;
    SimFeatureDef& selector = add(table, "FileSelector", FeatureDataEnum);
    selector.entries = f.fileNames();
    selector.getInt = [&f](int64_t& v) {
        v = f.selected();
        return ZebErrorSuccess;
    };
    selector.setInt = [&f](int64_t v) { return f.select(static_cast<uint32_t>(v)); };

    if (s.description.hasFilename) {
        SimFeatureDef& name = add(table, "Filename", FeatureDataString);
        name.getString = [&f](std::string& v) {
            v = f.selectedName();
            return ZebErrorSuccess;
        };
        name.setString = [&f](const std::string& v) { return f.selectByName(v); };
    }

    SimFeatureDef& mode = add(table, "FileOpenMode", FeatureDataEnum);
    mode.entries = {"Read", "Write", "ReadWrite"};
    mode.entryAvailable = [&f](int64_t v) { return f.modeAllowed(static_cast<uint32_t>(v)); };
    mode.getInt = [&f](int64_t& v) {
        v = f.openMode();
        return ZebErrorSuccess;
    };
    mode.setInt = [&f](int64_t v) { return f.setOpenMode(static_cast<uint32_t>(v)); };

    SimFeatureDef& operation = add(table, "FileOperationSelector", FeatureDataEnum);
    operation.entries = {"Open", "Close", "Read", "Write", "Delete"};
    operation.getInt = [&f](int64_t& v) {
        v = f.operation();
        return ZebErrorSuccess;
    };
    operation.setInt = [&f](int64_t v) {
        f.setOperation(static_cast<uint32_t>(v));
        return ZebErrorSuccess;
    };

    SimFeatureDef& execute = add(table, "FileOperationExecute", FeatureDataCommand);
    execute.readable = false;
    execute.commandDelayMs = operationDelayMs;
    execute.run = [&f, statusOnly = s.description.fileFailuresInStatus] {
        const ZebErrorType err = f.execute();
        return statusOnly ? ZebErrorSuccess : err;
    };

    SimFeatureDef& offset = add(table, "FileAccessOffset", FeatureDataInt);
    offset.getInt = [&f](int64_t& v) {
        v = f.offset();
        return ZebErrorSuccess;
    };
    offset.setInt = [&f](int64_t v) {
        f.setOffset(v);
        return ZebErrorSuccess;
    };
    offset.intRange = fixedRange(0, INT32_MAX);

    SimFeatureDef& length = add(table, "FileAccessLength", FeatureDataInt);
    length.writable = f.lengthWritable();
    length.getInt = [&f](int64_t& v) {
        v = f.length();
        return ZebErrorSuccess;
    };
    length.setInt = [&f](int64_t v) {
        f.setLength(v);
        return ZebErrorSuccess;
    };
    length.intRange = fixedRange(1, f.bufferSize());

    SimFeatureDef& buffer = add(table, "FileAccessBuffer", FeatureDataRaw);
    buffer.rawLength = f.bufferSize();
    buffer.getRaw = [&f](uint8_t* out, uint32_t size) { f.readBuffer(out, size); };
    buffer.setRaw = [&f](const uint8_t* data, uint32_t size) { f.writeBuffer(data, size); };

    readOnlyInt(table, "FileSize", [&f] { return f.fileSize(); });
    readOnlyInt(table, "FileOperationResult", [&f] { return f.result(); });
    readOnlyInt(table, "FileChunkId", [&f] { return f.chunkId(); });
    SimFeatureDef& status = add(table, "FileOperationStatus", FeatureDataEnum);
    status.entries = {"Success", "Failure"};
    status.writable = false;
    status.getInt = [&f](int64_t& v) {
        v = f.lastSucceeded() ? 0 : 1;
        return ZebErrorSuccess;
    };
}

void addStreamFeatures(Table& table, SimCameraState& s, InterfaceType type)
{
    if (type == InterfaceTypeGigEVision) {
        SimFeatureDef& protocol = add(table, "GVSPProtocol", FeatureDataEnum);
        protocol.onStream = true;
        protocol.entries = {"UDP", "TCP"};
        protocol.lockable = true;
        bindInt(protocol, s.gvspProtocol, 0, 1);

        SimFeatureDef& packetSize = add(table, "GVSPPacketSize", FeatureDataInt);
        packetSize.onStream = true;
        packetSize.lockable = true;
        bindInt(packetSize, s.packetSize, 576, 9000);
        packetSize.increment = 4;

        // The largest packet the simulated link carries without fragments.
        SimFeatureDef& adjust = add(table, "GVSPAdjustPacketSize", FeatureDataCommand);
        adjust.onStream = true;
        adjust.readable = false;
        adjust.lockable = true;
        adjust.run = [&s] {
            s.packetSize = 8996;
            return ZebErrorSuccess;
        };
    } else {
        SimFeatureDef& buffers = add(table, "StreamBufferCount", FeatureDataInt);
        buffers.onStream = true;
        buffers.lockable = true;
        bindInt(buffers, s.streamBufferCount, 1, 64);
    }
}

} // namespace

Table buildSimFeatureTable(SimCameraState& state, InterfaceType type)
{
    Table table;
    addIdentity(table, state);
    addImageFeatures(table, state);
    addMapFeatures(table, state);
    if (state.files)
        addFileAccess(table, state, state.description.fileOperationDelayMs);
    addStreamFeatures(table, state, type);
    return table;
}

} // namespace ZebCPP
