#pragma once

#include <array>
#include <string>

namespace lab {

/// The schema of the oldest labs as it grew: entry N takes one from version N to N + 1, the last
/// one to version 3. All that is here was released and does not change.
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

/// The schema of version 4 as a whole, to the letter as files keep it.
inline constexpr const char* kVersion4 = R"sql(CREATE TABLE hosts (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  nodeUuid TEXT NOT NULL UNIQUE,
  faultDomain TEXT,               -- NULL: one of its own, named as the host
  isKorelMax INTEGER NOT NULL DEFAULT 0,
  isInMaintenance INTEGER NOT NULL DEFAULT 0,
  resyncThrottle INTEGER NOT NULL DEFAULT 0,  -- Mbps, 0: none
  resyncRate INTEGER NOT NULL DEFAULT 0,      -- Mbps
  isDaemonRunning INTEGER NOT NULL DEFAULT 1,
  daemonStatus INTEGER,           -- what the init script answers; NULL: what is so
  daemonRestartStatus INTEGER     -- the same of a restart
) STRICT;
CREATE TABLE interfaces (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  position INTEGER NOT NULL,      -- in the inventory
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
  isKorelDirect INTEGER NOT NULL DEFAULT 0,
  isHealthy INTEGER NOT NULL DEFAULT 1,
  UNIQUE (host, name)
) STRICT;
CREATE TABLE claims (
  device INTEGER PRIMARY KEY REFERENCES devices ON DELETE CASCADE,
  cachingDevice INTEGER REFERENCES claims ON DELETE CASCADE,  -- NULL: of the storage pool
  formatVersion INTEGER NOT NULL,
  claimedAt TEXT NOT NULL,
  isMounted INTEGER NOT NULL DEFAULT 1,
  usedGb INTEGER NOT NULL         -- of data
) STRICT;
CREATE TABLE clusters (
  id INTEGER PRIMARY KEY,
  uuid TEXT NOT NULL UNIQUE,
  isClient INTEGER NOT NULL,
  preferredFaultDomain TEXT NOT NULL DEFAULT '',
  isEncrypted INTEGER NOT NULL DEFAULT 0,
  rekeyMinutes INTEGER NOT NULL DEFAULT 1440,
  generation INTEGER NOT NULL DEFAULT 0,
  changedAt INTEGER               -- seconds since 1970
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
CREATE TABLE mounts (
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  datastore INTEGER NOT NULL REFERENCES datastores ON DELETE CASCADE,  -- of another cluster
  name TEXT NOT NULL,
  PRIMARY KEY (cluster, datastore)
) STRICT, WITHOUT ROWID;
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
  UNIQUE (host, address, port, type, uuid, cluster)
) STRICT;
CREATE TABLE networkConfigs (
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
  isActive INTEGER NOT NULL,      -- every row is persisted
  PRIMARY KEY (host, interface),
  FOREIGN KEY (host, interface) REFERENCES interfaces ON DELETE CASCADE
) STRICT, WITHOUT ROWID;
CREATE TABLE policies (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  class INTEGER NOT NULL,
  value TEXT NOT NULL,
  PRIMARY KEY (host, class)
) STRICT, WITHOUT ROWID;
CREATE TABLE traceOptions (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  value TEXT NOT NULL,            -- as the trace daemon was told last
  PRIMARY KEY (host, name)
) STRICT, WITHOUT ROWID;
CREATE TABLE files (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  path TEXT NOT NULL,
  isReadOnly INTEGER NOT NULL,
  content BLOB NOT NULL,
  PRIMARY KEY (host, path)
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
CREATE TABLE history (
  number INTEGER PRIMARY KEY,
  command INTEGER NOT NULL,       -- the first entry of the command that this one is of
  time INTEGER NOT NULL,          -- seconds since 1970
  host TEXT NOT NULL,
  line TEXT NOT NULL,             -- the command line, as far as it is known
  operation TEXT NOT NULL,        -- the host control operation, when it was one
  version INTEGER NOT NULL,       -- of the schema
  size INTEGER NOT NULL,          -- of this entry in bytes
  total INTEGER NOT NULL,         -- of this and all earlier entries, forgotten ones included
  changes BLOB                    -- a changeset; NULL: it cannot be taken back
) STRICT;
CREATE INDEX claimsOfGroup ON claims (cachingDevice);
CREATE INDEX membershipsOfCluster ON memberships (cluster, host);
CREATE INDEX witnesses ON memberships (cluster) WHERE nodeType = 1;
CREATE INDEX datastoresInOrder ON datastores (cluster, isDefault DESC, name);
CREATE INDEX mountsInOrder ON mounts (cluster, name);
CREATE INDEX mountsOfDatastore ON mounts (datastore);
CREATE INDEX agentsOfCluster ON agents (host, cluster, type, supportsUnicast, address);
CREATE INDEX witnessAgents ON agents (host) WHERE type = 1;
)sql";

/// What made the tables of a lab of that version, 1 to 4.
inline std::string OldSchemaScript(int version) {
  const auto steps = static_cast<std::size_t>(version);
  if (steps > kOldMigrations.size()) return kVersion4;
  std::string script;
  for (std::size_t from = 0; from < steps; ++from) script += kOldMigrations[from];
  return script;
}

}  // namespace lab
