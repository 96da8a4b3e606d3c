#pragma once

#include <array>

namespace lab {

/// The version of the schema below, noted in the file.
inline constexpr int kSchemaVersion = 5;

/// A table or an index of a lab.
struct SchemaObject {
  const char* name;
  const char* sql;  ///< what makes it, to the letter as the file keeps it
};

/// The schema: a table follows those that it refers to. A lab's file holds exactly this.
///
/// Every table has a primary key, so that the memory can name its rows, and none is AUTOINCREMENT,
/// which would keep a count that taking back does not restore. A new column comes last in its table
/// and can be left out of an INSERT: so an older lab's rows and memory can be taken over.
inline constexpr auto kTables = std::to_array<SchemaObject>({
    {"hosts", R"sql(CREATE TABLE hosts (
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
) STRICT)sql"},
    {"interfaces", R"sql(CREATE TABLE interfaces (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  position INTEGER NOT NULL,      -- in the inventory
  PRIMARY KEY (host, name)
) STRICT, WITHOUT ROWID)sql"},
    {"devices", R"sql(CREATE TABLE devices (
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
  occupant INTEGER,               -- 1: partitions, 2: another host
  UNIQUE (host, name)
) STRICT)sql"},
    {"claims", R"sql(CREATE TABLE claims (
  device INTEGER PRIMARY KEY REFERENCES devices ON DELETE CASCADE,
  cachingDevice INTEGER REFERENCES claims ON DELETE CASCADE,  -- NULL: of the storage pool
  formatVersion INTEGER NOT NULL,
  claimedAt TEXT NOT NULL,
  isMounted INTEGER NOT NULL DEFAULT 1,
  usedGb INTEGER NOT NULL,        -- of data
  efficiency INTEGER,             -- 1: deduplication and compression, 2: compression
  encryption INTEGER,             -- NULL: none, 0: its key is missing, 1: its key is loaded
  wrongChecksum INTEGER           -- 1: the disk's, 2: that of its encryption metadata
) STRICT)sql"},
    {"clusters", R"sql(CREATE TABLE clusters (
  id INTEGER PRIMARY KEY,
  uuid TEXT NOT NULL UNIQUE,
  isClient INTEGER NOT NULL,
  preferredFaultDomain TEXT NOT NULL DEFAULT '',
  isEncrypted INTEGER NOT NULL DEFAULT 0,
  rekeyMinutes INTEGER NOT NULL DEFAULT 1440,
  generation INTEGER NOT NULL DEFAULT 0,
  changedAt INTEGER               -- seconds since 1970
) STRICT)sql"},
    {"memberships", R"sql(CREATE TABLE memberships (
  id INTEGER PRIMARY KEY,         -- in the order of joining
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  nodeType INTEGER NOT NULL,
  isActive INTEGER NOT NULL,      -- the host takes part now
  isPersisted INTEGER NOT NULL,   -- a restore makes it take part
  UNIQUE (host, cluster)
) STRICT)sql"},
    {"datastores", R"sql(CREATE TABLE datastores (
  id INTEGER PRIMARY KEY,
  uuid TEXT NOT NULL,             -- known to no cluster twice
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  name TEXT NOT NULL,
  isDefault INTEGER NOT NULL,
  UNIQUE (cluster, uuid),
  UNIQUE (cluster, name)
) STRICT)sql"},
    {"mounts", R"sql(CREATE TABLE mounts (
  cluster INTEGER NOT NULL REFERENCES clusters ON DELETE CASCADE,
  datastore INTEGER NOT NULL REFERENCES datastores ON DELETE CASCADE,  -- of another cluster
  name TEXT NOT NULL,
  PRIMARY KEY (cluster, datastore)
) STRICT, WITHOUT ROWID)sql"},
    {"agents", R"sql(CREATE TABLE agents (
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
) STRICT)sql"},
    {"networkConfigs", R"sql(CREATE TABLE networkConfigs (
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
) STRICT, WITHOUT ROWID)sql"},
    {"policies", R"sql(CREATE TABLE policies (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  class INTEGER NOT NULL,
  value TEXT NOT NULL,
  PRIMARY KEY (host, class)
) STRICT, WITHOUT ROWID)sql"},
    {"traceOptions", R"sql(CREATE TABLE traceOptions (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  name TEXT NOT NULL,
  value TEXT NOT NULL,            -- as the trace daemon was told last
  PRIMARY KEY (host, name)
) STRICT, WITHOUT ROWID)sql"},
    {"files", R"sql(CREATE TABLE files (
  host INTEGER NOT NULL REFERENCES hosts ON DELETE CASCADE,
  path TEXT NOT NULL,
  isReadOnly INTEGER NOT NULL,
  content BLOB NOT NULL,
  PRIMARY KEY (host, path)
) STRICT, WITHOUT ROWID)sql"},
    {"features", R"sql(CREATE TABLE features (
  name TEXT PRIMARY KEY,
  isEnabled INTEGER NOT NULL
) STRICT, WITHOUT ROWID)sql"},
    {"faults", R"sql(CREATE TABLE faults (
  operation TEXT NOT NULL,
  message TEXT,                   -- NULL: the calls are slow and do not fail
  count INTEGER,                  -- calls that are struck; NULL: all
  host TEXT NOT NULL DEFAULT '',  -- the one whose calls these are; empty: any
  afterCalls INTEGER NOT NULL DEFAULT 0,  -- that are spared first
  delayMs INTEGER NOT NULL DEFAULT 0,
  id INTEGER NOT NULL DEFAULT 0,  -- tells it from those that it replaced
  PRIMARY KEY (operation, host)
) STRICT, WITHOUT ROWID)sql"},
});

/// What is in the file beside the lab's own rows: the memory, which keeps what changed them, and
/// kFaultCalls.
inline constexpr SchemaObject kHistory{"history", R"sql(CREATE TABLE history (
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
) STRICT)sql"};

/// How many calls each fault has come to see. Counting is no change of the lab: it leaves no entry
/// in the memory, and taking an entry back does not take back what was called.
inline constexpr SchemaObject kFaultCalls{"faultCalls", R"sql(CREATE TABLE faultCalls (
  operation TEXT NOT NULL,
  host TEXT NOT NULL,
  id INTEGER NOT NULL,
  calls INTEGER NOT NULL,
  PRIMARY KEY (operation, host, id)
) STRICT, WITHOUT ROWID)sql"};

/// So that what a command asks for is looked up and not looked for, and so that a row that goes
/// finds those that refer to it.
inline constexpr auto kIndexes = std::to_array<SchemaObject>({
    {"claimsOfGroup", "CREATE INDEX claimsOfGroup ON claims (cachingDevice)"},
    {"membershipsOfCluster", "CREATE INDEX membershipsOfCluster ON memberships (cluster, host)"},
    {"witnesses", "CREATE INDEX witnesses ON memberships (cluster) WHERE nodeType = 1"},
    {"datastoresInOrder",
     "CREATE INDEX datastoresInOrder ON datastores (cluster, isDefault DESC, name)"},
    {"mountsInOrder", "CREATE INDEX mountsInOrder ON mounts (cluster, name)"},
    {"mountsOfDatastore", "CREATE INDEX mountsOfDatastore ON mounts (datastore)"},
    {"agentsOfCluster",
     "CREATE INDEX agentsOfCluster ON agents (host, cluster, type, supportsUnicast, address)"},
    {"witnessAgents", "CREATE INDEX witnessAgents ON agents (host) WHERE type = 1"},
});

}  // namespace lab
