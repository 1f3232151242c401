package com.example.channels;

/** Fills list 1, edits it, saves it, and loads the file into list 2. */
public final class Main {
    private static final String FILE = "/data/channels"; // on a workstation $TAVRO_HOME/data/channels

    private Main() {}

    /** Takes no arguments. */
    public static void main(String[] arguments) throws ChannelStoreException {
        ChannelStore store = new ChannelStore(1, FILE);
        store.add("One News", 10301, 1);
        Channel sport = store.add("Two Sport", 10302, 2);
        Channel shop = store.add("Three Shop", 10303, 3);
        store.renumber(sport.id(), 7);
        store.setVisible(shop.id(), false);
        store.save();

        ChannelStore loaded = new ChannelStore(2, FILE);
        loaded.load();
        loaded.channels().forEach(System.out::println);
        try {
            new ChannelStore(3, "/data/missing").load();
        } catch (ChannelStoreException e) {
            System.out.println(e.getMessage());
        }
    }
}
