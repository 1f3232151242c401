package com.velotra.tv.tavro.bench;

import java.nio.file.Path;
import java.sql.PreparedStatement;
import java.sql.ResultSet;
import java.sql.SQLException;

/** Services stored as the bytes of their records. */
final class BlobTable extends SqliteJdbc<byte[]> {
    BlobTable(Path file) throws SQLException {
        super(file, "bytes BLOB NOT NULL", "?");
    }

    @Override
    void bind(PreparedStatement row, byte[] service) throws SQLException {
        row.setBytes(2, service);
    }

    @Override
    byte[] take(ResultSet row) throws SQLException {
        return row.getBytes(2);
    }
}
