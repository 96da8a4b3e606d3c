#pragma once

#include <array>

namespace lab {

/// A rule of the model as a question: which rows break it, each by its name.
struct Rule {
  const char* sql;
  const char* kind;
  const char* problem;
};

inline constexpr auto kRules = std::to_array<Rule>({
    {"SELECT name FROM hosts WHERE isKorelMax NOT IN (0, 1) OR isInMaintenance NOT IN (0, 1) "
     "OR isDaemonRunning NOT IN (0, 1) OR resyncThrottle NOT BETWEEN 0 AND 512 "
     "OR resyncRate NOT BETWEEN 0 AND 1000000",
     "host", "has a value out of its range"},
    {"SELECT name FROM hosts WHERE isKorelMax "
     "AND NOT EXISTS (SELECT 1 FROM memberships WHERE host = hosts.id)",
     "host", "is a Korel Max host without a cluster"},
    {"SELECT name FROM hosts WHERE isKorelMax AND EXISTS (SELECT 1 FROM devices "
     "JOIN claims ON device = devices.id WHERE host = hosts.id)",
     "host", "is a Korel Max host with disks in use"},
    {"SELECT name FROM hosts WHERE (SELECT count(*) FROM devices JOIN claims ON device = "
     "devices.id "
     "WHERE host = hosts.id AND cachingDevice = device) > 4",
     "host", "has more than 4 disk groups"},
    {"SELECT name FROM devices WHERE isFlash NOT IN (0, 1) OR isCapacityFlash NOT IN (0, 1) "
     "OR isKorelDirect NOT IN (0, 1) OR isHealthy NOT IN (0, 1) "
     "OR sizeGb NOT BETWEEN 1 AND 1000000 OR occupant NOT IN (1, 2)",
     "device", "has a value out of its range"},
    {"SELECT name FROM devices WHERE isCapacityFlash AND NOT isFlash", "device",
     "is tagged capacityFlash and is not flash"},
    {"SELECT name FROM devices JOIN claims ON device = id WHERE formatVersion NOT BETWEEN 1 AND 20 "
     "OR isMounted NOT IN (0, 1) OR usedGb NOT BETWEEN 0 AND sizeGb OR efficiency NOT IN (1, 2) "
     "OR encryption NOT IN (0, 1) OR wrongChecksum NOT IN (1, 2)",
     "claimed device", "has a value out of its range"},
    {"SELECT name FROM devices JOIN claims ON device = id WHERE occupant IS NOT NULL", "device",
     "is claimed, and has partitions or is in use by another host"},
    {"SELECT name FROM devices JOIN claims AS own ON own.device = devices.id "
     "JOIN claims AS head ON head.device = own.cachingDevice "
     "WHERE own.efficiency IS NOT head.efficiency "
     "OR (own.encryption IS NULL) <> (head.encryption IS NULL)",
     "device", "is not deduplicated, compressed or encrypted as its disk group is"},
    {"SELECT name FROM devices JOIN claims ON device = id WHERE efficiency IS NOT NULL "
     "AND NOT isFlash",
     "device", "is deduplicated or compressed and is not flash"},
    {"SELECT name FROM devices JOIN claims ON device = id WHERE wrongChecksum = 2 "
     "AND encryption IS NULL",
     "device", "has encryption metadata and is not encrypted"},
    {"SELECT name FROM devices JOIN claims ON device = id WHERE isKorelDirect", "device",
     "is tagged korelDirect and claimed"},
    {"SELECT name FROM devices JOIN claims ON device = id "
     "WHERE cachingDevice = device AND (NOT isFlash OR isCapacityFlash OR usedGb > 0)",
     "caching device", "cannot serve a disk group for caching"},
    {"SELECT devices.name FROM devices JOIN claims ON claims.device = devices.id "
     "JOIN claims AS head ON head.device = claims.cachingDevice "
     "JOIN devices AS caching ON caching.id = head.device "
     "WHERE head.cachingDevice IS NOT head.device OR caching.host <> devices.host",
     "device", "is in a disk group that is none"},
    {"SELECT name FROM devices JOIN claims ON device = id "
     "WHERE cachingDevice <> device AND isFlash AND NOT isCapacityFlash",
     "device", "serves a disk group for capacity and is not for that"},
    {"SELECT name FROM devices WHERE (SELECT count(*) FROM claims WHERE cachingDevice = devices.id "
     "AND device <> devices.id) > 6",
     "disk group", "has more than 6 capacity devices"},
    {"SELECT name FROM devices JOIN claims ON device = id WHERE cachingDevice IS NULL "
     "AND NOT isFlash",
     "device", "is in the storage pool and is not flash"},
    {"SELECT uuid FROM clusters WHERE isClient NOT IN (0, 1) OR isEncrypted NOT IN (0, 1) "
     "OR rekeyMinutes NOT BETWEEN 30 AND 10080 OR generation < 0",
     "cluster", "has a value out of its range"},
    {"SELECT uuid FROM clusters WHERE NOT EXISTS "
     "(SELECT 1 FROM memberships WHERE cluster = clusters.id)",
     "cluster", "has no member"},
    {"SELECT uuid FROM clusters WHERE "
     "(SELECT count(*) FROM memberships WHERE cluster = clusters.id AND nodeType = 1) > 1",
     "cluster", "has more than one witness"},
    {"SELECT uuid FROM clusters WHERE NOT isClient "
     "AND (SELECT count(*) FROM datastores WHERE cluster = clusters.id AND isDefault) <> 1",
     "cluster", "has not one default datastore"},
    {"SELECT hosts.name FROM memberships JOIN hosts ON hosts.id = host "
     "WHERE nodeType NOT BETWEEN 0 AND 2 OR isActive NOT IN (0, 1) OR isPersisted NOT IN (0, 1) "
     "OR NOT (isActive OR isPersisted)",
     "the membership of host", "has a value out of its range"},
    {"SELECT name FROM hosts WHERE (SELECT count(*) FROM memberships WHERE host = hosts.id) > 1 "
     "AND EXISTS (SELECT 1 FROM memberships WHERE host = hosts.id AND nodeType <> 1)",
     "host", "is in several clusters and no witness"},
    {"SELECT name FROM datastores WHERE isDefault NOT IN (0, 1)", "datastore",
     "has a value out of its range"},
    {"SELECT mounts.name FROM mounts JOIN datastores ON id = datastore "
     "WHERE datastores.cluster = mounts.cluster",
     "mounted datastore", "is one of the cluster itself"},
    {"SELECT name FROM (SELECT cluster, name FROM datastores UNION ALL "
     "SELECT cluster, name FROM mounts) GROUP BY cluster, name HAVING count(*) > 1",
     "datastore name", "is there twice in a cluster"},
    {"SELECT uuid FROM (SELECT cluster, uuid FROM datastores UNION ALL SELECT mounts.cluster, uuid "
     "FROM mounts JOIN datastores ON id = datastore) GROUP BY cluster, uuid HAVING count(*) > 1",
     "datastore UUID", "is there twice in a cluster"},
    {"SELECT address FROM agents JOIN hosts ON hosts.id = host WHERE agents.uuid = nodeUuid",
     "unicast agent", "has the UUID of its own host"},
    {"SELECT interface FROM networkConfigs WHERE carriesKorel NOT IN (0, 1) "
     "OR carriesWitness NOT IN (0, 1) OR isActive NOT IN (0, 1) "
     "OR agentPort NOT BETWEEN 1 AND 65535 OR masterPort NOT BETWEEN 1 AND 65535 "
     "OR unicastPort NOT BETWEEN 1 AND 65535 OR ttl NOT BETWEEN 1 AND 255 "
     "OR NOT (carriesKorel OR carriesWitness)",
     "the configuration of interface", "has a value out of its range"},
    {"SELECT class FROM policies WHERE class NOT BETWEEN 0 AND 4", "policy class",
     "is none of a lab's"},
    {"SELECT path FROM files WHERE isReadOnly NOT IN (0, 1) OR length(content) > 65536", "file",
     "is larger than 64 KiB, or has a value out of its range"},
    {"SELECT number FROM history WHERE number NOT BETWEEN 1 AND 1 << 53 "
     "OR command NOT BETWEEN 1 AND number OR size < 0 OR total NOT BETWEEN size AND 1 << 53",
     "entry", "of the memory has a value out of its range"},
    {"SELECT operation FROM faults WHERE count < 1 OR afterCalls < 0 "
     "OR delayMs NOT BETWEEN 0 AND 3600000 OR (message IS NULL AND delayMs = 0)",
     "the injected failure of", "has a value out of its range"},
    {"SELECT operation FROM faults WHERE host <> '' AND host NOT IN (SELECT name FROM hosts)",
     "the injected failure of", "is of a host that is not there"},
});

}  // namespace lab
