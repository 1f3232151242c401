package com.velotra.tv.tavro.bench;

import java.lang.reflect.Field;
import java.nio.file.Path;
import java.sql.PreparedStatement;
import java.sql.ResultSet;
import java.sql.SQLException;
import java.util.Collections;
import java.util.stream.Collectors;

/** Services stored with a column for every named field. */
final class ColumnTable extends SqliteJdbc<Service> {
    private static final Field[] COLUMNS = Service.COLUMNS.toArray(Field[]::new);

    ColumnTable(Path file) throws SQLException {
        super(file, Service.COLUMNS.stream()
                        .map(field -> field.getName() + (field.getType() == String.class ? " TEXT" : " INTEGER"))
                        .collect(Collectors.joining(", ")),
                String.join(", ", Collections.nCopies(COLUMNS.length, "?")));
    }

    @Override
    void bind(PreparedStatement row, Service service) throws SQLException {
        try {
            for (int i = 0; i < COLUMNS.length; i++) {
                Field column = COLUMNS[i];
                if (column.getType() == String.class) {
                    row.setString(i + 2, (String) column.get(service));
                } else if (column.getType() == long.class) {
                    row.setLong(i + 2, column.getLong(service));
                } else {
                    row.setInt(i + 2, column.getInt(service));
                }
            }
        } catch (IllegalAccessException e) {
            throw new IllegalStateException(e);
        }
    }

    @Override
    Service take(ResultSet row) throws SQLException {
        Service service = new Service();
        try {
            for (int i = 0; i < COLUMNS.length; i++) {
                Field column = COLUMNS[i];
                if (column.getType() == String.class) {
                    column.set(service, row.getString(i + 2));
                } else if (column.getType() == long.class) {
                    column.setLong(service, row.getLong(i + 2));
                } else {
                    column.setInt(service, row.getInt(i + 2));
                }
            }
        } catch (IllegalAccessException e) {
            throw new IllegalStateException(e);
        }
        return service;
    }
}
