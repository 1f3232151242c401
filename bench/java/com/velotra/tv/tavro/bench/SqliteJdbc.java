package com.velotra.tv.tavro.bench;

import java.nio.file.Files;
import java.nio.file.Path;
import java.sql.Connection;
import java.sql.DriverManager;
import java.sql.PreparedStatement;
import java.sql.ResultSet;
import java.sql.SQLException;
import java.sql.Statement;
import java.util.ArrayList;
import java.util.List;

/**
 * A table of services in a SQLite database, accessed through sqlite-jdbc; as durable as the one in
 * host/services/storage.cpp.
 */
abstract class SqliteJdbc<T> implements AutoCloseable {
    private final Connection connection;
    private final PreparedStatement insert;
    private final PreparedStatement one;
    private final PreparedStatement all;
    private int lastId;

    /**
     * @param columns definitions of the columns after the id
     * @param values the same number of question marks
     */
    SqliteJdbc(Path file, String columns, String values) throws SQLException {
        if (Files.exists(file)) {
            throw new IllegalStateException(file + " already exists");
        }
        connection = DriverManager.getConnection("jdbc:sqlite:" + file);
        try (Statement statement = connection.createStatement()) {
            expect(statement, "PRAGMA journal_mode = WAL", "wal");
            statement.execute("PRAGMA synchronous = NORMAL");
            expect(statement, "PRAGMA synchronous", "1");
            expect(statement, "PRAGMA wal_autocheckpoint = 1000", "1000");
            statement.execute("CREATE TABLE services (id INTEGER PRIMARY KEY, " + columns + ")");
        }
        insert = connection.prepareStatement("INSERT INTO services VALUES (?, " + values + ")");
        one = connection.prepareStatement("SELECT * FROM services WHERE id = ?");
        all = connection.prepareStatement("SELECT * FROM services ORDER BY id");
    }

    private static void expect(Statement statement, String pragma, String value) throws SQLException {
        try (ResultSet row = statement.executeQuery(pragma)) {
            if (!row.next() || !row.getString(1).equals(value)) {
                throw new SQLException(pragma + " did not return " + value);
            }
        }
    }

    /** Sets the columns after the id. */
    abstract void bind(PreparedStatement row, T service) throws SQLException;

    /** Reads the columns after the id. */
    abstract T take(ResultSet row) throws SQLException;

    /** Adds a service with the next id, in its own transaction. */
    void add(T service) throws SQLException {
        insert.setInt(1, ++lastId);
        bind(insert, service);
        insert.executeUpdate();
    }

    /** Adds services in one transaction. */
    void addAll(List<T> services) throws SQLException {
        connection.setAutoCommit(false);
        for (T service : services) {
            add(service);
        }
        connection.commit();
        connection.setAutoCommit(true);
    }

    T read(int id) throws SQLException {
        one.setInt(1, id);
        try (ResultSet row = one.executeQuery()) {
            return row.next() ? take(row) : null;
        }
    }

    List<T> readAll() throws SQLException {
        List<T> services = new ArrayList<>();
        try (ResultSet row = all.executeQuery()) {
            while (row.next()) {
                services.add(take(row));
            }
        }
        return services;
    }

    @Override
    public void close() throws SQLException {
        connection.close();
    }
}
