-- The company and the colours of its screens.

CREATE TABLE Setup (
  CompanyName TEXT NOT NULL,
  OpeningDate TEXT NOT NULL  -- first transaction date; opening documents are dated before it
);
GO
INSERT INTO Setup (CompanyName, OpeningDate)
VALUES ('Shree Ganesh Distributors, Pune', '2008-04-01');
GO

-- Row k, counted from 0, colours: 0 the screen and its frames, 1 captions and choices, 2 inputs and
-- lists; 3 to 5 belong to other screens. A colour is red + 256 * green + 65536 * blue; a negative
-- number is one of the system's own colours.
CREATE TABLE ColorSettings (
  ItemName TEXT NOT NULL,
  BackColor INTEGER,
  ForeColor INTEGER
);
GO
INSERT INTO ColorSettings (ItemName, BackColor, ForeColor)
VALUES
  ('Screen', 15917529, 8388608),
  ('Caption', 15917529, 8388608),
  ('Input', 16777215, -2147483640),
  ('Grid', 16777215, -2147483640),
  ('Heading', 13603685, 16777215),
  ('Total', 14745599, 8388608);
GO

-- Procedures are statements in this table. A row is one step; the steps of a call take effect
-- together or not at all, and a step that returns rows is a result of the call. "arguments" lists, for
-- each mark of the statement, the number of the parameter it takes; the highest number is how many
-- parameters the procedure has.
CREATE TABLE StoredProcedure (
  name TEXT NOT NULL COLLATE NOCASE,
  step INTEGER NOT NULL,
  statement TEXT NOT NULL,
  arguments TEXT NOT NULL,
  PRIMARY KEY (name, step)
) WITHOUT ROWID;
GO
