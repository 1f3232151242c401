package com.velotra.tv.tavro.bench;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.ServiceField;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import java.io.Serializable;
import java.lang.reflect.Field;
import java.util.Arrays;
import java.util.List;
import java.util.Objects;

/** A DVB service as a Java object with a field for every named field of the record. The other entrants store it. */
final class Service implements Serializable {
    private static final long serialVersionUID = 1;

    /** The fields of a record, in the order of {@link #COLUMNS}. */
    private static final List<ServiceField> RECORD = Arrays.stream(ServiceField.values())
            .filter(field -> field.belongsTo(BroadcastType.DVB))
            .toList();

    /** The fields of this class. */
    static final List<Field> COLUMNS = RECORD.stream().map(Service::column).toList();

    int recordId;
    long channelId;
    long networkMask;
    long optionMask;
    long optionMask2;
    int serviceId;
    int tslId;
    int tslRecordId;
    int nwlId;
    int nwlRecordId;
    int satlId;
    int satlRecordId;
    int broadcastType;
    int serviceType;
    String name;
    String shortName;
    int caSystemId;
    long runningStatus;
    long linkageMask;
    int caReplacementOnId;
    int caReplacementTsId;
    int caReplacementSvcId;
    int svcReplacementOnId;
    int svcReplacementTsId;
    int svcReplacementSvcId;
    int eitScheduleOnId;
    int eitScheduleTsId;
    int eitScheduleSvcId;
    int hdSimulcastOnId;
    int hdSimulcastTsId;
    int hdSimulcastSvcId;
    int dvbFreeCaMode;
    int ciHostShunning;
    int ciTuneService;
    int eitPfFlag;
    int lcn;
    int originalLcn;
    int lcnIndex;
    int displayingFlag;
    int displayingTsId;
    int displayingSvcId;
    long componentInfo;
    int dvbSdtServiceType;
    String dadInfo;
    long categoryMask;
    String profileName;
    int regionLevel;
    int regionCode1;
    int regionCode2;
    int regionCode3;
    int streamContent;
    int streamContentExt;
    int streamComponentType;

    private static Field column(ServiceField field) {
        StringBuilder name = new StringBuilder();
        for (String word : field.name().split("_")) {
            name.append(name.isEmpty() ? word.substring(0, 1).toLowerCase() : word.substring(0, 1));
            name.append(word.substring(1).toLowerCase());
        }
        try {
            return Service.class.getDeclaredField(name.toString());
        } catch (NoSuchFieldException e) {
            throw new IllegalStateException("no field for " + field, e);
        }
    }

    /** Returns the service in a record. */
    static Service of(ServiceRecord record) {
        Service service = new Service();
        try {
            for (int i = 0; i < RECORD.size(); i++) {
                Field column = COLUMNS.get(i);
                ServiceField field = RECORD.get(i);
                if (column.getType() == String.class) {
                    column.set(service, record.text(field));
                } else if (column.getType() == long.class) {
                    column.setLong(service, record.value(field));
                } else {
                    column.setInt(service, (int) record.value(field));
                }
            }
        } catch (IllegalAccessException e) {
            throw new IllegalStateException(e);
        }
        return service;
    }

    private List<Object> values() {
        try {
            Object[] values = new Object[COLUMNS.size()];
            for (int i = 0; i < values.length; i++) {
                values[i] = COLUMNS.get(i).get(this);
            }
            return Arrays.asList(values);
        } catch (IllegalAccessException e) {
            throw new IllegalStateException(e);
        }
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof Service service && values().equals(service.values());
    }

    @Override
    public int hashCode() {
        return Objects.hash(serviceId, name);
    }
}
