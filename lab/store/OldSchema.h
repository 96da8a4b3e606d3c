#pragma once

#include <array>

#include "lab/store/Schema.h"

namespace lab {

/// The schema of older labs as it grew: entry N takes one from version N to N + 1. These were
/// released and do not change. Later versions are known by their differences from the present one.
inline constexpr std::array kOldMigrations{R"sql(
CREATE TABLE hosts (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  nodeUuid TEXT NOT NULL UNIQUE,
  faultDomain TEXT                -- NULL: one of its own, named as the host
) STRICT;
CREATE TABLE interfaces (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  PRIMARY KEY (host, name)
) STRICT, WITHOUT ROWID;
CREATE TABLE devices (
  id INTEGER PRIMARY KEY,
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  uuid TEXT NOT NULL UNIQUE,
  isFlash INTEGER NOT NULL,
  isCapacityFlash INTEGER NOT NULL,
  sizeGb INTEGER NOT NULL,
  vendor TEXT NOT NULL,
  model TEXT NOT NULL,
  UNIQUE (host, name)
) STRICT;
CREATE TABLE claims (
  device INTEGER PRIMARY KEY REFERENCES devices ON DELETE CASCADE,
  cachingDevice INTEGER NOT NULL REFERENCES claims ON DELETE CASCADE,  -- itself when it is the one
  formatVersion INTEGER NOT NULL,
  claimedAt TEXT NOT NULL,
  isMounted INTEGER NOT NULL DEFAULT 1
) STRICT;
CREATE TABLE clusters (
  id INTEGER PRIMARY KEY,
  uuid TEXT NOT NULL UNIQUE,
  isClient INTEGER NOT NULL,
  preferredFaultDomain TEXT NOT NULL DEFAULT ''
) STRICT;
CREATE TABLE memberships (
  id INTEGER PRIMARY KEY,         -- in the order of joining
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  nodeType INTEGER NOT NULL,
  isActive INTEGER NOT NULL,      -- the host takes part now
  isPersisted INTEGER NOT NULL,   -- a restore makes it take part
  UNIQUE (host, cluster)
) STRICT;
CREATE TABLE datastores (
  id INTEGER PRIMARY KEY,
  uuid TEXT NOT NULL UNIQUE,
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  name TEXT NOT NULL,
  isDefault INTEGER NOT NULL,
  UNIQUE (cluster, name)
) STRICT;
CREATE TABLE mounts (             -- datastores of other clusters
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  datastore INTEGER NOT NULL REFERENCES datastores ON DELETE CASCADE,
  name TEXT NOT NULL,
  PRIMARY KEY (cluster, datastore)
) STRICT, WITHOUT ROWID;
CREATE TABLE features (
  name TEXT PRIMARY KEY,
  isEnabled INTEGER NOT NULL
) STRICT, WITHOUT ROWID;
CREATE TABLE faults (
  operation TEXT PRIMARY KEY,
  message TEXT NOT NULL,
  remaining INTEGER               -- calls that will still fail; NULL: all
) STRICT, WITHOUT ROWID;
)sql",
                                           R"sql(
ALTER TABLE interfaces ADD COLUMN position INTEGER NOT NULL DEFAULT 0;  -- in the inventory
ALTER TABLE hosts ADD COLUMN isKorelMax INTEGER NOT NULL DEFAULT 0;
ALTER TABLE hosts ADD COLUMN isInMaintenance INTEGER NOT NULL DEFAULT 0;
ALTER TABLE hosts ADD COLUMN resyncThrottle INTEGER NOT NULL DEFAULT 0;  -- Mbps, 0: none
ALTER TABLE hosts ADD COLUMN resyncRate INTEGER NOT NULL DEFAULT 0;      -- Mbps
ALTER TABLE clusters ADD COLUMN isEncrypted INTEGER NOT NULL DEFAULT 0;
ALTER TABLE clusters ADD COLUMN rekeyMinutes INTEGER NOT NULL DEFAULT 1440;
ALTER TABLE clusters ADD COLUMN generation INTEGER NOT NULL DEFAULT 0;
ALTER TABLE clusters ADD COLUMN changedAt INTEGER;  -- seconds since 1970
CREATE TABLE agents (
  id INTEGER PRIMARY KEY,         -- in the order of adding
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  uuid TEXT NOT NULL,
  type INTEGER NOT NULL,
  supportsUnicast INTEGER NOT NULL,
  address TEXT NOT NULL,
  port INTEGER NOT NULL,
  interface TEXT NOT NULL,
  thumbprint TEXT NOT NULL,
  cluster TEXT NOT NULL,          -- a UUID, of a cluster that the lab need not know
  UNIQUE (host, uuid, type, address, port, cluster)
) STRICT;
CREATE TABLE networkConfigs (     -- what is persisted
  host INTEGER NOT NULL,
  interface TEXT NOT NULL,
  agentV4 TEXT NOT NULL,
  agentV6 TEXT NOT NULL,
  masterV4 TEXT NOT NULL,
  masterV6 TEXT NOT NULL,
  agentPort INTEGER NOT NULL,
  masterPort INTEGER NOT NULL,
  unicastPort INTEGER NOT NULL,
  ttl INTEGER NOT NULL,
  carriesKorel INTEGER NOT NULL,
  carriesWitness INTEGER NOT NULL,
  isActive INTEGER NOT NULL,
  PRIMARY KEY (host, interface),
  FOREIGN KEY (host, interface) REFERENCES interfaces ON DELETE CASCADE
) STRICT, WITHOUT ROWID;
CREATE TABLE policies (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  class INTEGER NOT NULL,
  value TEXT NOT NULL,
  PRIMARY KEY (host, class)
) STRICT, WITHOUT ROWID;
)sql",
                                           R"sql(
ALTER TABLE devices ADD COLUMN isKorelDirect INTEGER NOT NULL DEFAULT 0;
ALTER TABLE devices ADD COLUMN isHealthy INTEGER NOT NULL DEFAULT 1;
CREATE TABLE newClaims (
  device INTEGER PRIMARY KEY REFERENCES devices ON DELETE CASCADE,
  cachingDevice INTEGER REFERENCES newClaims ON DELETE CASCADE,  -- NULL: of the storage pool
  formatVersion INTEGER NOT NULL,
  claimedAt TEXT NOT NULL,
  isMounted INTEGER NOT NULL DEFAULT 1,
  usedGb INTEGER NOT NULL         -- of data
) STRICT;
INSERT INTO newClaims
  SELECT device, cachingDevice, formatVersion, claimedAt, isMounted,
         CASE WHEN device = cachingDevice THEN 0 ELSE sizeGb / 4 END
  FROM claims JOIN devices ON id = device;
DROP TABLE claims;
ALTER TABLE newClaims RENAME TO claims;
CREATE TABLE traceOptions (       -- as the trace daemon was told last
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  value TEXT NOT NULL,
  PRIMARY KEY (host, name)
) STRICT, WITHOUT ROWID;
)sql"};

/// Tables and indexes that version 4 had otherwise, as it had them; null for what it lacked.
inline constexpr auto kOtherInVersion4 = std::to_array<SchemaObject>({
    {"datastores", R"sql(CREATE TABLE datastores (
  id INTEGER PRIMARY KEY,
  uuid TEXT NOT NULL UNIQUE,
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  name TEXT NOT NULL,
  isDefault INTEGER NOT NULL,
  UNIQUE (cluster, name)
) STRICT)sql"},
});

}  // namespace lab
