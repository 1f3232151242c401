/**
 * The lists of the TV: services, transport streams, networks and satellites.
 *
 * <p>Each kind has a list class with one instance, such as {@code VltTvChannelList.getInstance()}. Records are read as
 * views ({@code ServiceRecord}, {@code TransportStreamRecord}) or as objects with getters ({@code VltTvNetworkInfo},
 * {@code VltTvSatelliteInfo}), and written as objects with optional values ({@code VltTv...InfoBase}):
 *
 * <pre>{@code
 * VltTvChannelList lists = VltTvChannelList.getInstance();
 * lists.open(1);
 * RecordId id = lists.add(1, new VltTvChannelInfoBase().setServiceName("News").setServiceId(10301));
 * lists.update(1, VltTvChannelInfoBase.forRecord(id).put(ServiceFlag.VISIBLE, true));
 * lists.get(id).ifPresent(service -> System.out.println(service.name() + " " + service.flags()));
 * lists.store(1, "/data/services");
 * lists.load(2, "/data/services");
 * }</pre>
 *
 * <p>Ids, failures and threads are the same for all kinds: see {@code TvList}. The names that the native library looks
 * up are listed in docs/java-contract.md and must not change.
 */
package com.velotra.tv.tavro.services.channellist;
